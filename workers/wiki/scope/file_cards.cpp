#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/internal.h"
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

std::vector<std::string> texts(const std::vector<Text>& names) {
    return {names.begin(), names.end()};
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

// The declarations that `counts` knows to be used, most references first, as "`name` L<line> (<label><references>)".
std::vector<std::string> listed_by(const OrderedMap<SymbolId, std::int64_t>& counts, std::string_view label,
                                   std::span<const ScopeSymbol* const> declarations) {
    std::vector<std::pair<std::int64_t, const ScopeSymbol*>> used;
    for (const ScopeSymbol* declaration : declarations) {
        if (const std::int64_t count = counts.get(declaration->id, 0); count > 0) {
            used.emplace_back(count, declaration);
        }
    }
    std::stable_sort(used.begin(), used.end(),
                     [](const auto& left, const auto& right) { return left.first > right.first; });

    std::vector<std::string> listed;
    listed.reserve(used.size());
    for (const auto& [count, declaration] : used) {
        std::string& text = listed.emplace_back("`");
        text.append(declaration->name.view()).append("` L").append(std::to_string(declaration->start_line));
        text.append(" (").append(label).append(std::to_string(count)).append(")");
    }
    return listed;
}

}  // namespace

std::vector<std::string> _most_used(std::span<const ScopeSymbol* const> declarations, const FanIn& fan_in) {
    std::vector<std::string> listed = listed_by(fan_in.outside, "", declarations);
    return listed.empty() ? listed_by(fan_in.inside, "in-page ", declarations) : listed;
}

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
            _cell(_named(texts(of_path(tests_by_file, file.path)))),
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
