#include "workers/wiki/scope/consumers.h"

#include "tests/scope/page_builder.h"
#include "workers/wiki/scope/fan_in.h"

#include <gtest/gtest.h>

#include <string>

namespace wiki::scope {
namespace {

Consumers consumers_of(const ScopeFacts& facts) {
    return consumers(facts, production_fan_in(facts));
}

TEST(Consumers, AreListedByTheirReferencesThenByPath) {
    PageBuilder page;
    page.files = {{1, "a.ts", "typescript"}};
    page.import_resolved_paths = {"a.ts"};
    page.test_sources = {"test/t.ts"};
    page.inbound = {
        from("b.ts").to(1, "a.ts", "one").times(2),
        from("b.ts").to(2, "a.ts", "two").times(2),
        from("b.ts").to(3, "a.ts", "three"),
        from("b.ts").to(4, "a.ts", "three").times(2),  // another declaration of that name
        from("b.ts").to(5, "a.ts", "four"),
        from("b.ts").to(6, "a.ts", "five"),
        from("z.ts").to(1, "a.ts", "one").times(9),
        from("c.ts").to(1, "a.ts", "one").times(4),
        from("a.ts").to(1, "a.ts", "own").by("local").times(100),
        from("test/t.ts").to(1, "a.ts", "one").times(100),
        from("c.ts").to(1, "a.ts", "one").times(5),
        from("n.ts").to(2, "a.ts", "two").by("unique").times(3),
        from("b.ts").to(3, "a.ts", "three").by("ambiguous"),
        from("n.ts").to(2, "a.ts", "two").by("ambiguous"),
    };
    const Consumers found = consumers_of(page.facts());
    EXPECT_EQ(found.files,
              (models::Excerpt<Consumer>{{{"b.ts", 9, {{{"three", 3}, {"one", 2}, {"two", 2}, {"four", 1}}, 5}},
                                          {"c.ts", 9, {{{"one", 9}}, 1}},
                                          {"z.ts", 9, {{{"one", 9}}, 1}}},
                                         3}));
    EXPECT_EQ(found.uncounted, (std::vector<UncountedReferences>{{"ambiguous", 2}, {"unique", 3}}));
    EXPECT_EQ(found.uncounted_files, 2);
}

TEST(Consumers, BeyondTwelveAreCounted) {
    PageBuilder page;
    for (char source = 'm'; source >= 'a'; --source) {
        page.inbound.push_back(from(std::string(1, source)));
    }
    const models::Excerpt<Consumer> files = consumers_of(page.facts()).files;
    ASSERT_EQ(files.shown.size(), 12);
    EXPECT_EQ(files.shown.back().path, "l");
    EXPECT_EQ(files.left_out(), 1);
}

TEST(Consumers, AreLikelyOnesForTheLanguagesWhoseImportsAreNotResolved) {
    PageBuilder page;
    page.files = {
        {1, "a.lua", "lua"}, {2, "b.ts", "typescript"}, {3, "c", ""}, {4, "d", std::nullopt}, {5, "e.lua", "lua"}};
    page.import_resolved_paths = {"b.ts"};
    page.inbound = {from("x.lua").to(1, "a.lua", "one").by("unique"), from("x.ts").to(2, "b.ts", "two").by("unique"),
                    from("y.lua").to(3, "a.lua", "C").by("unique").kind("constant")};
    const Consumers found = consumers_of(page.facts());
    EXPECT_EQ(found.unresolved_languages, (std::vector<Text>{"", "lua"}));
    EXPECT_EQ(found.files, (models::Excerpt<Consumer>{{{"x.lua", 1, {{{"one", 1}}, 1}}}, 1}));
}

TEST(Consumers, LeavePublicTopLevelCodeUnusedTypesFirstThenByRank) {
    PageBuilder page;
    page.symbols = {symbol(1, "small").lines(20, 21),
                    symbol(2, "large").in("b.ts").lines(20, 40),
                    symbol(3, "used").lines(30, 31),
                    symbol(4, "_private"),
                    symbol(5, "hidden").hidden(),
                    symbol(6, "member").kind("method").lines(51, 52),
                    symbol(7, "Type").kind("class").lines(50, 60),
                    symbol(8, "VARIABLE").kind("constant"),
                    symbol(9, "small").in("Z.ts").lines(20, 21)};
    page.inbound = {from("x.ts").to(3), from("x.ts").to(1).by("ambiguous"), from("a.ts").to(7).by("legacy")};
    for (int id = 10; id < 15; ++id) {
        page.symbols.push_back(symbol(id, "f").lines(70, 70));
    }
    page.files = {{1, "a.ts", {}}, {2, "b.ts", {}}, {3, "Z.ts", {}}};
    const ScopeFacts facts = page.facts();
    const models::Excerpt<const ScopeSymbol*> unused = consumers_of(facts).unused;
    const std::vector<ScopeSymbol>& s = facts.symbols;
    EXPECT_EQ(unused.shown,
              (std::vector<const ScopeSymbol*>{&s[6], &s[1], &s[8], &s[9], &s[10], &s[11], &s[12], &s[13]}));
    EXPECT_EQ(unused.left_out(), 1);  // the one that a reference reaches: it is no entry point
    const Consumers doubting = consumers(facts, production_fan_in(facts), Unproven::MAY_BE_USE);
    EXPECT_EQ(doubting.unused.shown, unused.shown);
    EXPECT_EQ(doubting.unused.left_out(), 0);
}

}  // namespace
}  // namespace wiki::scope
