#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/internal/table_text.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace wiki::scope {

namespace {

constexpr std::string_view OPENING =
    "\n\n"
    "Every file of this page, from the index. Lines and the summary come from the file; the most used declarations "
    "are ranked by the references production code outside the page makes to them (line, references; `in-page` when "
    "only the page's own files use them); users are the other production files that reference the file through "
    "evidence-backed edges.\n\n"
    "| File | Lines | Declarations | Summary | Most used | Used by | Tests |\n"
    "|---|---|---|---|---|---|---|\n";

using Declarations = std::vector<const ScopeSymbol*>;

// A list of declarations that are used, each as "`name` L<line> (<label><references>)": most references first, equal
// counts in the given order. A text is written when it is asked for: of many declarations a card shows three.
class UsedDeclarations {
  public:
    // Those of `declarations` that `counts` knows to be used.
    UsedDeclarations(const Declarations& declarations, const OrderedMap<SymbolId, std::int64_t>& counts,
                     std::string_view label)
        : label_(label) {
        for (const ScopeSymbol* declaration : declarations) {
            if (const std::int64_t references = counts.get(declaration->id, 0); references > 0) {
                used_.push_back({references, declaration});
            }
        }
        std::stable_sort(used_.begin(), used_.end(),
                         [](const Used& left, const Used& right) { return left.references > right.references; });
    }

    [[nodiscard]] std::size_t size() const { return used_.size(); }
    [[nodiscard]] bool empty() const { return used_.empty(); }

    [[nodiscard]] std::string operator[](std::size_t place) const {
        const auto& [references, declaration] = used_[place];
        return _concatenated({"`", declaration->name, "` L", std::to_string(declaration->start_line), " (", label_,
                              std::to_string(references), ")"});
    }

  private:
    struct Used {
        std::int64_t references;
        const ScopeSymbol* declaration;
    };
    std::vector<Used> used_;
    std::string_view label_;
};

// The declarations of one file that production code uses most: those used from outside the page, else those that the
// page's own files use, labelled "in-page ". The list is whole: the caller cuts it.
UsedDeclarations _most_used(const Declarations& declarations, const FanIn& fan_in) {
    UsedDeclarations outside(declarations, fan_in.outside, "");
    return outside.empty() ? UsedDeclarations(declarations, fan_in.inside, "in-page ") : outside;
}

OrderedMap<Text, Declarations> declarations_by_file(const ScopeFacts& facts) {
    OrderedMap<Text, Declarations> by_file;
    for (const ScopeSymbol& symbol : facts.symbols) {
        by_file[symbol.path].push_back(&symbol);
    }
    return by_file;
}

// The value of a path; an empty one when it has none.
template <class Value>
const Value& of_path(const OrderedMap<Text, Value>& values, const Text& path) {
    static const Value EMPTY;
    const Value* value = values.find(path);
    return value == nullptr ? EMPTY : *value;
}

std::string lines_cell(const std::int64_t* lines) {
    return lines == nullptr ? "?" : std::to_string(*lines);
}

std::string users_cell(const Counter<Text>& users) {
    std::vector<std::string> shown;
    for (const auto& [path, references] : users.most_common(CARD_NAMES)) {
        shown.push_back(_short_path(path));
    }
    return _cell(_shown(shown, users.size()));
}

}  // namespace

std::string render_file_cards(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading,
                              std::span<const std::string> missing) {
    const OrderedMap<Text, Declarations> by_file = declarations_by_file(facts);
    const FileUsers users = file_users(facts);
    const auto tests_by_file = tests_reaching(facts).tests_by_file;

    std::string rows(heading);
    rows += OPENING;
    for (const ScopeFile& file : facts.files) {
        const Declarations& declarations = of_path(by_file, file.path);
        const std::array cells{
            _concatenated({"`", file.path, "`"}),
            lines_cell(facts.line_counts.find(file.path)),
            std::to_string(declarations.size()),
            _cell(of_path(facts.summaries, file.path)),
            _cell(_named(_most_used(declarations, fan_in))),
            users_cell(of_path(users, file.path)),
            _cell(_named(of_path(tests_by_file, file.path))),
        };
        rows += "|";
        for (const std::string& cell : cells) {
            rows.append(" ").append(cell).append(" |");
        }
        rows += "\n";
    }
    for (const std::string& path : missing) {
        rows.append("| `").append(path).append("` | ? | 0 | not in the index | | | |\n");
    }
    return rows;
}

}  // namespace wiki::scope
