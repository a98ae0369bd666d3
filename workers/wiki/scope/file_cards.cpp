#include "workers/wiki/scope/file_cards.h"

#include "utils/first_in_order.h"
#include "workers/wiki/scope/fan_in.h"

#include <algorithm>

namespace wiki::scope {

namespace {

using Declarations = std::vector<const ScopeSymbol*>;

constexpr std::size_t SHOWN = 3;  // declarations, users and tests of one card

OrderedMap<Text, Declarations> declarations_by_file(const ScopeFacts& facts) {
    OrderedMap<Text, Declarations> by_file;
    for (const ScopeSymbol& symbol : facts.symbols) {
        by_file[symbol.path].push_back(&symbol);
    }
    return by_file;
}

// Those of some declarations that `counts` knows to be used.
models::Excerpt<UsedDeclaration> most_used(const Declarations& declarations,
                                           const OrderedMap<SymbolId, std::int64_t>& counts) {
    std::vector<UsedDeclaration> used;
    for (const ScopeSymbol* declaration : declarations) {
        if (const std::int64_t references = counts.get(declaration->id, 0); references > 0) {
            used.push_back({declaration, references});
        }
    }
    models::Excerpt<UsedDeclaration> excerpt{.total = used.size()};
    const auto by_references = [](const UsedDeclaration& left, const UsedDeclaration& right) {
        return right.references <=> left.references;
    };
    for (const UsedDeclaration* each : utils::first_in_order(used, SHOWN, by_references)) {
        excerpt.shown.push_back(*each);
    }
    return excerpt;
}

models::Excerpt<FileUser> most_frequent(const Counter<Text>& users) {
    models::Excerpt<FileUser> excerpt{.total = users.size()};
    for (const auto& [path, references] : users.most_common(SHOWN)) {
        excerpt.shown.push_back({path, references});
    }
    return excerpt;
}

models::Excerpt<Text> first_of(const std::vector<Text>& tests) {
    const auto end = tests.begin() + static_cast<std::ptrdiff_t>(std::min(SHOWN, tests.size()));
    return {.shown = {tests.begin(), end}, .total = tests.size()};
}

}  // namespace

std::vector<FileCard> file_cards(const ScopeFacts& facts, const FanIn& fan_in, std::span<const std::string> missing) {
    const OrderedMap<Text, Declarations> declarations_of = declarations_by_file(facts);
    const FileUsers users_of = file_users(facts);
    const auto tests_of = tests_reaching(facts).tests_by_file;

    std::vector<FileCard> cards;
    cards.reserve(facts.files.size() + missing.size());
    for (const ScopeFile& file : facts.files) {
        FileCard& card = cards.emplace_back();
        card.path = file.path;
        card.is_indexed = true;
        if (const std::int64_t* lines = facts.line_counts.find(file.path)) {
            card.lines = *lines;
        }
        if (const Text* summary = facts.summaries.find(file.path)) {
            card.summary = *summary;
        }
        if (const Declarations* declarations = declarations_of.find(file.path)) {
            card.declarations = declarations->size();
            card.most_used = most_used(*declarations, fan_in.outside);
            if (card.most_used.total == 0) {
                card.most_used = most_used(*declarations, fan_in.inside);
                card.is_used_inside_only = card.most_used.total > 0;
            }
        }
        if (const Counter<Text>* users = users_of.find(file.path)) {
            card.users = most_frequent(*users);
        }
        if (const std::vector<Text>* tests = tests_of.find(file.path)) {
            card.tests = first_of(*tests);
        }
    }
    for (const std::string& path : missing) {
        cards.emplace_back().path = path;
    }
    return cards;
}

}  // namespace wiki::scope
