#include "bench/generated_page.h"

#include "utils/path_filter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <concepts>
#include <random>
#include <string>
#include <tuple>

namespace bench {

namespace {

using models::Text;
using storage::InboundReference;
using storage::OutboundReference;
using storage::ScopeFile;
using storage::ScopeSymbol;

class Generator {
  public:
    explicit Generator(const Shape& shape) : shape_(shape) {
        for (int i = 0; i < shape_.files; ++i) {
            files_.push_back({i + 1, path(i, false), Text("typescript")});
        }
        for (int i = 0; i < shape_.sources; ++i) {
            // Every twentieth source is a file of the page, every tenth a test.
            sources_.push_back(i % 20 == 0 ? files_[below(shape_.files)].path : path(1'000'000 + i, i % 10 == 1));
        }
    }

    wiki::scope::ScopeFacts page() {
        std::vector<ScopeSymbol> symbols = declarations(shape_.declarations, files_, 1);
        std::vector<InboundReference> inbound = inbound_references(symbols);
        wiki::scope::TextSet tests;
        for (const Text& source : sources_) {
            if (utils::is_test_path(source)) {
                tests.insert(source);
            }
        }
        wiki::scope::TextSet resolved;
        wiki::scope::OrderedMap<Text, std::int64_t> line_counts;
        wiki::scope::OrderedMap<Text, Text> summaries;
        for (const ScopeFile& file : files_) {
            if (file.id % 4 != 0) {
                resolved.insert(file.path);
            }
            line_counts[file.path] = 400;
            summaries[file.path] = "What the file says that it is for, on one line.";
        }
        return {.files = files_,
                .symbols = std::move(symbols),
                .inbound = std::move(inbound),
                .outbound = outbound_references(),
                .import_resolved_paths = std::move(resolved),
                .test_sources = std::move(tests),
                .line_counts = std::move(line_counts),
                .summaries = std::move(summaries)};
    }

  private:
    std::size_t below(std::integral auto limit) { return random_() % static_cast<std::size_t>(limit); }

    // An index below `limit`, small ones far more often: the share of the first k grows with the logarithm of k.
    std::size_t skewed(int limit) {
        const double uniform = static_cast<double>(random_()) / static_cast<double>(std::mt19937::max());
        const double index = std::pow(static_cast<double>(limit), uniform) - 1;
        return std::min(static_cast<std::size_t>(index), static_cast<std::size_t>(limit - 1));
    }

    // 30 to 90 characters.
    Text path(int number, bool is_test) {
        constexpr std::array<const char*, 8> FOLDERS{"packages", "core",    "internal", "schedule",
                                                     "render",   "network", "platform", "telemetry"};
        std::string path = is_test ? "packages/tests" : "packages/source";
        for (std::size_t depth = below(4); depth < 5; ++depth) {
            path += std::string("/") + FOLDERS[below(FOLDERS.size())];
        }
        return path + "/component_" + std::to_string(number) + ".ts";
    }

    // Declarations of `files` with the ids from `first_id` on, file by file and line by line.
    std::vector<ScopeSymbol> declarations(int count, const std::vector<ScopeFile>& files, std::int64_t first_id) {
        std::vector<ScopeSymbol> symbols;
        symbols.reserve(static_cast<std::size_t>(count));
        const int files_used = shape_.one_file ? 1 : static_cast<int>(files.size());
        for (int i = 0; i < count; ++i) {
            const auto file = static_cast<std::size_t>(std::int64_t{i} * files_used / count);
            const int in_file =
                i - static_cast<int>((static_cast<std::int64_t>(file) * count + files_used - 1) / files_used);
            const bool is_type = shape_.nested_types || in_file % 10 == 0;
            const int start = shape_.nested_types ? 1 + i : 1 + in_file * 8;
            const int end = shape_.nested_types ? 2 * count - i : start + (is_type ? 60 : static_cast<int>(below(8)));
            const std::string name = (i % 13 == 0 ? "_member_" : "member_") + std::to_string(i % 20'000);
            symbols.push_back({.id = first_id + i,
                               .path = files[file].path,
                               .name = name_of(name),
                               .kind = is_type ? TYPES[below(TYPES.size())] : KINDS[below(KINDS.size())],
                               .is_export = i % 5 != 0,
                               .start_line = start,
                               .end_line = end,
                               .fqn = Text("packages.component_" + std::to_string(file) + "." + name)});
        }
        return symbols;
    }

    std::vector<InboundReference> inbound_references(const std::vector<ScopeSymbol>& symbols) {
        std::vector<InboundReference> references;
        references.reserve(static_cast<std::size_t>(shape_.inbound));
        // The declarations with most references are spread over the page.
        std::vector<std::size_t> by_use(symbols.size());
        for (std::size_t i = 0; i < by_use.size(); ++i) {
            by_use[i] = i;
        }
        std::shuffle(by_use.begin(), by_use.end(), random_);
        // A file that uses one declaration of a file mostly uses others of it too.
        const int per_source = shape_.one_source ? shape_.inbound : shape_.inbound / shape_.sources;
        std::size_t target = 0;
        for (int i = 0; i < shape_.inbound; ++i) {
            const Text& source = sources_[static_cast<std::size_t>(i / per_source % shape_.sources)];
            const bool stays = i % per_source != 0 && below(5) < 3;
            target = stays ? neighbour_of(target, symbols) : by_use[skewed(shape_.declarations)];
            const ScopeSymbol& symbol = symbols[target];
            references.push_back({.source_path = source,
                                  .target_id = symbol.id,
                                  .target_path = symbol.path,
                                  .target_name = symbol.name,
                                  .target_kind = symbol.kind,
                                  .resolution = resolution(i, source == symbol.path),
                                  .refs = 1 + static_cast<std::int64_t>(below(5))});
        }
        std::sort(references.begin(), references.end(), [](const auto& left, const auto& right) {
            return std::tie(left.source_path, left.target_id, left.resolution) <
                   std::tie(right.source_path, right.target_id, right.resolution);
        });
        return references;
    }

    // Another declaration of the same file, or the same.
    std::size_t neighbour_of(std::size_t target, const std::vector<ScopeSymbol>& symbols) {
        const std::size_t candidate = target - std::min(target, skewed(40));
        return symbols[candidate].path == symbols[target].path ? candidate : target;
    }

    std::vector<OutboundReference> outbound_references() {
        std::vector<ScopeFile> elsewhere;
        for (int i = 0; i < std::max(1, shape_.files / 2); ++i) {
            elsewhere.push_back({2'000'000 + i, path(2'000'000 + i, i % 15 == 0), Text("typescript")});
        }
        const int targets = std::max(1, shape_.outbound / 25);
        const std::vector<ScopeSymbol> symbols = declarations(targets, elsewhere, 10'000'000);
        std::vector<OutboundReference> references;
        references.reserve(static_cast<std::size_t>(shape_.outbound));
        for (int i = 0; i < shape_.outbound; ++i) {
            references.push_back({.source_path = files_[below(shape_.files)].path,
                                  .target = symbols[skewed(targets)],
                                  .resolution = resolution(i, false),
                                  .refs = 1 + static_cast<std::int64_t>(below(5))});
        }
        std::sort(references.begin(), references.end(), [](const auto& left, const auto& right) {
            return std::tie(left.source_path, left.target.id, left.resolution) <
                   std::tie(right.source_path, right.target.id, right.resolution);
        });
        return references;
    }

    // Four references in five are imports; the others match a name.
    Text resolution(int number, bool is_local) {
        if (shape_.distinct_resolutions) {
            return "resolution_" + std::to_string(number);
        }
        return is_local ? RESOLUTIONS[0] : RESOLUTIONS[1 + std::max<std::size_t>(below(10), 7) - 7];
    }

    Text name_of(const std::string& name) {
        const auto [text, is_new] = names_.find_or_add(name);
        if (is_new) {
            text = name;
        }
        return text;
    }

    const Shape shape_;
    std::mt19937 random_{2026};
    const std::array<Text, 4> RESOLUTIONS{"local", "import", "unique", "ambiguous"};
    const std::array<Text, 3> TYPES{"class", "interface", "enum"};
    const std::array<Text, 6> KINDS{"method", "method", "function", "attribute", "constant", "variable"};
    wiki::scope::OrderedMap<std::string, Text> names_;
    std::vector<ScopeFile> files_;
    std::vector<Text> sources_;
};

}  // namespace

Shape Shape::times(int factor) const {
    Shape larger = *this;
    for (int* const count : {&larger.files, &larger.declarations, &larger.inbound, &larger.outbound, &larger.sources}) {
        *count *= factor;
    }
    return larger;
}

wiki::scope::ScopeFacts generated_page(const Shape& shape) {
    return Generator(shape).page();
}

}  // namespace bench
