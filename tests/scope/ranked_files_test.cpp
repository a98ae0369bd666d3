#include "workers/wiki/scope/ranked_files.h"

#include "tests/scope/page_builder.h"

#include <gtest/gtest.h>

#include <limits>

namespace wiki::scope {
namespace {

constexpr std::int64_t MOST = std::numeric_limits<std::int64_t>::max();

TEST(RankKey, IsWhatItsTableSays) {
    const FanIn fan_in{
        .outside = {{1, 3}, {2, 5}, {9, -MOST - 1}}, .inside = {{2, 2}, {3, 1}, {9, MOST}}, .entry = {4}};
    for (const auto& [declaration, key] : std::vector<std::pair<ScopeSymbol, RankKey>>{
             {symbol(1, "Class").kind("class").lines(10, 50), {false, 0, false, -6, -40, 0, 10}},
             {symbol(2, "CONSTANT").kind("constant").lines(7, 7), {false, 1, false, -5, 0, -2, 7}},
             {symbol(3, "_private").lines(5, 99), {true, 0, true, 0, -40, -2, 5}},
             {symbol(4, "entry").lines(3, 15), {false, 0, false, 0, -12, 0, 3}},
             {symbol(5, "").kind("variable").lines(9, 4), {true, 1, false, 0, 5, 0, 9}},
             {symbol(9, "far").lines(std::numeric_limits<int>::max(), std::numeric_limits<int>::min()),
              {true, 0, false, MOST, 4294967295, -MOST - 1, 2147483647}},
         }) {
        EXPECT_EQ(rank_key(declaration, fan_in), key) << declaration.name;
    }
}

TEST(RankedByFile, PutsTheBestFirstAndKeepsTheOrderOfEquals) {
    PageBuilder page;
    page.symbols = {symbol(1, "late").in("b.ts").lines(9, 9),
                    symbol(2, "small"),
                    symbol(3, "twin").lines(5, 9),
                    symbol(4, "twin").lines(5, 9),
                    symbol(5, "early").in("b.ts"),
                    symbol(6, "used").kind("variable")};
    const ScopeFacts facts = page.facts();
    const RankedFiles ranked = ranked_by_file(facts, FanIn{{{6, 1}}});
    const std::vector<ScopeSymbol>& s = facts.symbols;
    EXPECT_EQ(ranked, (RankedFiles{{"b.ts", {&s[4], &s[0]}}, {"a.ts", {&s[5], &s[2], &s[3], &s[1]}}}));
}

TEST(RankedByFile, KeepsTheOrderOfManyEquals) {
    constexpr int MANY = 40;  // more than a sort leaves in order by chance
    PageBuilder page;
    for (int id = 0; id < MANY; ++id) {
        page.symbols.push_back(symbol(id, "twin"));
    }
    const ScopeFacts facts = page.facts();
    const RankedFiles ranked = ranked_by_file(facts, FanIn{{}});
    EXPECT_TRUE(std::ranges::is_sorted(*ranked.find("a.ts"), {}, &ScopeSymbol::id));
}

TEST(FileSeeds, CiteTheBestDeclarationThatHasALineElseTheWholeFile) {
    PageBuilder page;
    page.files = {{1, "empty.ts", {}},  {2, "whole.ts", {}}, {3, "a.ts", {}},
                  {4, "unread.ts", {}}, {5, "zero.ts", {}},  {6, "one.ts", {}}};
    page.line_counts = {{"empty.ts", 0}, {"whole.ts", 12}, {"a.ts", 99}, {"zero.ts", 7}, {"one.ts", 1}};
    page.symbols = {symbol(1, "backwards").in("unlisted.ts").lines(8, 3), symbol(2, "nowhere").lines(0, 90),
                    symbol(3, "second").lines(4, 6), symbol(4, "third").lines(1, 2),
                    symbol(5, "below").in("zero.ts").lines(-1, 5),
                    // Longer than the longest that counts: equal keys, of which the first wins.
                    symbol(6, "first").in("equal.ts").lines(1, 50), symbol(7, "later").in("equal.ts").lines(1, 60)};
    EXPECT_EQ(file_seeds(page.facts(), FanIn{{}}), (OrderedMap<Text, LineRange>{{"unlisted.ts", {8, 8}},
                                                                                {"a.ts", {4, 6}},
                                                                                {"equal.ts", {1, 50}},
                                                                                {"whole.ts", {1, 12}},
                                                                                {"zero.ts", {1, 7}},
                                                                                {"one.ts", {1, 1}}}));
}

}  // namespace
}  // namespace wiki::scope
