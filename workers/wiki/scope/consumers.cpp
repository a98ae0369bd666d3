#include "utils/first_in_order.h"
#include "workers/wiki/scope/internal/evidence.h"
#include "workers/wiki/scope/internal/members.h"
#include "workers/wiki/scope/internal/privacy.h"
#include "workers/wiki/scope/internal/table_text.h"
#include "workers/wiki/scope/kinds.h"
#include "workers/wiki/scope/ranking.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <compare>
#include <set>
#include <tuple>

namespace wiki::scope {

namespace {

constexpr std::size_t CONSUMER_ROWS = 12;  // consumer files listed
constexpr std::size_t CONSUMER_NAMES = 4;  // names shown for each consumer file
constexpr std::size_t UNUSED_NAMES = 8;    // declarations named as unused from outside

using Consumers = Counter<Text>;  // path -> references that count
using Consumer = Consumers::Entry;

// What the references from production files outside the page amount to.
struct OutsideUse {
    Consumers consumers;
    OrderedSet<SymbolId> used;    // the targets of the references that count
    Counter<Text> left_out;       // resolution -> references that do not count
    OrderedSet<Text> left_files;  // the sources of those references
};

OutsideUse use_from_outside(const ScopeFacts& facts) {
    const TextSet page = facts.paths();
    Remembered is_outside([&](const Text& path) { return !page.contains(path) && !facts.test_sources.contains(path); });
    auto is_use_of = _use_rule(facts);
    OutsideUse use;
    for (const InboundReference& reference : facts.inbound) {
        if (!is_outside(reference.source_path)) {
            continue;
        }
        if (is_use_of(reference)) {
            use.consumers.add(reference.source_path, reference.refs);
            use.used.insert(reference.target_id);
        } else {
            use.left_out.add(reference.resolution, reference.refs);
            use.left_files.insert(reference.source_path);
        }
    }
    return use;
}

std::vector<const Consumer*> first_consumers(const Consumers& consumers) {
    return utils::first_in_order(consumers, CONSUMER_ROWS, [](const Consumer& left, const Consumer& right) {
        const auto by_count = right.value <=> left.value;
        return std::is_neq(by_count) ? by_count : left.key <=> right.key;
    });
}

// Consumer -> name of a declaration -> references that the consumer makes to it.
using NamesUsed = OrderedMap<Text, Counter<Text>>;

NamesUsed names_used_by(const std::vector<const Consumer*>& consumers, const ScopeFacts& facts) {
    NamesUsed names;
    for (const Consumer* consumer : consumers) {
        names[consumer->key];
    }
    Remembered is_wanted([&](const Text& path) { return names.contains(path); });
    auto is_use_of = _use_rule(facts);
    for (const InboundReference& reference : facts.inbound) {
        if (is_wanted(reference.source_path) && is_use_of(reference)) {
            names[reference.source_path].add(reference.target_name, reference.refs);
        }
    }
    return names;
}

std::string joined(const std::vector<std::string>& texts) {
    return _shown(texts, texts.size());
}

// The languages of the page without resolved imports, in order, each once.
std::vector<std::string> unresolved_languages(const ScopeFacts& facts) {
    std::set<Text> languages;
    for (const ScopeFile& file : facts.files) {
        if (!facts.import_resolved(file.path)) {
            languages.insert(file.language.value_or(Text()));
        }
    }
    std::vector<std::string> names;
    names.reserve(languages.size());
    for (const Text& language : languages) {
        names.emplace_back(language.empty() ? "files of unknown language" : language.view());
    }
    return names;
}

std::string intro_line(const std::vector<std::string>& unresolved) {
    if (unresolved.empty()) {
        return "Production files outside this page that use its code, counted from `import` and `local` edges only "
               "(evidence); `unique` and `ambiguous` edges match a name and are not counted.";
    }
    return _concatenated(
        {"The index does not resolve imports for ", joined(unresolved),
         ", so the files below reference this page's code by a `unique` name (the only production declaration of that "
         "name): likely uses, not proven ones. Attribute and constant names are not counted."});
}

std::string consumer_line(const Consumer& consumer, const Counter<Text>& names) {
    std::vector<std::string> shown;
    for (const auto& [name, references] : names.most_common(CONSUMER_NAMES)) {
        shown.push_back(_concatenated({"`", name, "`"}));
    }
    return _concatenated(
        {"- `", consumer.key, "` uses ", _shown(shown, names.size()), " (", std::to_string(consumer.value), " refs)"});
}

std::string overflow_line(std::size_t more) {
    return _concatenated({"- _...and ", std::to_string(more), " more files_"});
}

std::string no_consumers_line(bool by_name) {
    return _concatenated({"0 production consumers: no production file outside this page reaches its code ",
                          by_name ? "by a unique name." : "through an `import` or `local` edge."});
}

std::string not_counted_line(const Counter<Text>& left_out, std::size_t files) {
    std::vector<Counter<Text>::Entry> by_resolution(left_out.begin(), left_out.end());
    std::sort(by_resolution.begin(), by_resolution.end(),
              [](const auto& left, const auto& right) { return left.key < right.key; });
    std::vector<std::string> mix;
    mix.reserve(by_resolution.size());
    for (const auto& [resolution, references] : by_resolution) {
        mix.push_back(_concatenated({std::to_string(references), " `", resolution, "`"}));
    }
    return _concatenated(
        {"Not counted: ", joined(mix), " references from ", std::to_string(files), " other file", files > 1 ? "s" : "",
         " that match a name only (an attribute or a call that shares a name with a declaration here)."});
}

// An exported, public, top-level type or callable that no production file outside the page uses.
struct Unused {
    bool is_no_type;
    RankKey key;
    const ScopeSymbol* symbol;

    // Types first, then by rank, then by path.
    [[nodiscard]] auto order() const { return std::tie(is_no_type, key, symbol->path); }
};

// In the order of `facts.symbols`. `used` are the ids of the declarations that production files outside the page use.
std::vector<Unused> _unused_outside(const ScopeFacts& facts, const OrderedSet<SymbolId>& used, const FanIn& fan_in) {
    const OrderedSet<SymbolId> members = _members(facts);
    std::vector<Unused> unused;
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (is_callable_or_type(symbol.kind) && !used.contains(symbol.id) && symbol.is_export &&
            !_is_private(symbol.name) && !members.contains(symbol.id)) {
            unused.push_back({!TYPE_KINDS.contains(symbol.kind), rank_key(symbol, fan_in), &symbol});
        }
    }
    return unused;
}

std::string unused_line(const std::vector<Unused>& unused) {
    std::vector<std::string> shown;
    const auto in_order = [](const Unused& left, const Unused& right) { return left.order() <=> right.order(); };
    for (const Unused* declaration : utils::first_in_order(unused, UNUSED_NAMES, in_order)) {
        const ScopeSymbol& symbol = *declaration->symbol;
        shown.push_back(_concatenated(
            {"`", symbol.name, "` (", symbol.kind, ", `", symbol.path, ":L", std::to_string(symbol.start_line), "`)"}));
    }
    const std::size_t more = unused.size() - shown.size();
    return _concatenated(
        {"Used by no production file outside this page: ", joined(shown),
         more > 0 ? _concatenated({" and ", std::to_string(more), " more"}) : "",
         " (code used inside the page, entry points, and code reached dynamically or by name can still be live)."});
}

}  // namespace

std::string render_consumers(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading) {
    const OutsideUse use = use_from_outside(facts);
    const std::vector<std::string> unresolved = unresolved_languages(facts);

    std::vector<std::string> lines{std::string(heading), "", intro_line(unresolved)};
    const std::vector<const Consumer*> shown = first_consumers(use.consumers);
    const NamesUsed names = names_used_by(shown, facts);
    for (const Consumer* consumer : shown) {
        lines.push_back(consumer_line(*consumer, *names.find(consumer->key)));
    }
    if (use.consumers.size() > CONSUMER_ROWS) {
        lines.push_back(overflow_line(use.consumers.size() - CONSUMER_ROWS));
    }
    if (use.consumers.empty()) {
        lines.push_back(no_consumers_line(!unresolved.empty()));
    }
    if (!use.left_out.empty()) {
        lines.push_back(not_counted_line(use.left_out, use.left_files.size()));
    }
    if (const auto unused = _unused_outside(facts, use.used, fan_in); !unused.empty()) {
        lines.push_back(unused_line(unused));
    }

    std::string block;
    for (const std::string& line : lines) {
        block.append(line).append("\n");
    }
    return block;
}

}  // namespace wiki::scope
