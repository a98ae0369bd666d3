#include "workers/wiki/scope/internal/members.h"

#include "tests/scope/page_builder.h"
#include "workers/wiki/scope/kinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace wiki::scope {
namespace {

// Membership as it is defined: any type of the file with another id whose lines enclose the declaration's.
bool is_member(const ScopeSymbol& symbol, const ScopeFacts& facts) {
    return std::any_of(facts.symbols.begin(), facts.symbols.end(), [&](const ScopeSymbol& type) {
        return TYPE_KINDS.contains(type.kind) && type.path == symbol.path && type.id != symbol.id &&
               type.start_line <= symbol.start_line && type.end_line >= symbol.end_line;
    });
}

TEST(Members, AreThoseOfThePlainDefinition) {
    std::mt19937 random(20);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (int round = 0; round < 2000; ++round) {
        PageBuilder page;
        const int ids = 1 + below(12);
        for (int i = below(12); i > 0; --i) {
            const int start = below(8) - 1;
            const char* kinds[] = {"class", "enum", "function"};
            page.symbols.push_back(symbol(below(ids), "s")
                                       .in(below(3) == 0 ? "b.ts" : "a.ts")
                                       .kind(kinds[below(3)])
                                       .lines(start, start + below(6) - 1));
        }
        const ScopeFacts facts = page.facts();
        const OrderedSet<SymbolId> members = _members(facts);
        OrderedSet<SymbolId> expected;
        for (const ScopeSymbol& symbol : facts.symbols) {
            if (is_member(symbol, facts)) {
                expected.insert(symbol.id);
            }
        }
        ASSERT_EQ(members, expected) << "round " << round;
    }
}

TEST(Members, AreAllOfManyTypesOnOneLine) {
    constexpr int MANY = 40;
    for (const char* const kind : {"struct", "interface", "class", "type", "enum"}) {
        PageBuilder page;
        for (int id = 0; id < MANY; ++id) {
            page.symbols.push_back(symbol(id, "T").kind(kind).lines(3, 3));
        }
        EXPECT_EQ(_members(page.facts()).size(), MANY) << kind;
    }
}

}  // namespace
}  // namespace wiki::scope
