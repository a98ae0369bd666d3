#include "workers/wiki/scope/file_cards.h"

#include "tests/scope/page_builder.h"
#include "workers/wiki/scope/fan_in.h"

#include <gtest/gtest.h>

namespace wiki::scope {
namespace {

std::vector<FileCard> cards_of(const ScopeFacts& facts, const std::vector<std::string>& missing = {}) {
    return file_cards(facts, production_fan_in(facts), missing);
}

TEST(FileCards, StandInTheOrderOfThePageThoseOfMissingFilesLast) {
    PageBuilder page;
    page.files = {{1, "read.ts", {}}, {2, "empty.ts", {}}, {3, "a.ts", {}}};
    page.line_counts = {{"read.ts", 120}, {"empty.ts", 0}};
    page.summaries = {{"read.ts", "Reads."}};
    page.symbols = {symbol(1, "one").in("read.ts"), symbol(2, "two").in("read.ts")};
    const std::vector<FileCard> expected{
        {.path = "read.ts", .is_indexed = true, .lines = 120, .declarations = 2, .summary = "Reads."},
        {.path = "empty.ts", .is_indexed = true, .lines = 0},
        {.path = "a.ts", .is_indexed = true},
        {.path = "gone.ts"},
        {.path = "a.ts"}};
    EXPECT_EQ(cards_of(page.facts(), {"gone.ts", "a.ts"}), expected);
}

TEST(FileCards, ShowTheDeclarationsUsedMostFromOutside) {
    PageBuilder page;
    page.files = {{1, "a.ts", {}}};
    page.symbols = {symbol(1, "once"),         symbol(2, "thrice"),  symbol(3, "five"),   symbol(4, "also_thrice"),
                    symbol(5, "again_thrice"), symbol(6, "in_page"), symbol(7, "unused"), symbol(8, "negative")};
    page.inbound = {from("x.ts").to(1),          from("x.ts").to(2).times(3), from("x.ts").to(3).times(5),
                    from("x.ts").to(4).times(3), from("x.ts").to(5).times(3), from("a.ts").to(6).times(9),
                    from("x.ts").to(8).times(-1)};
    const ScopeFacts facts = page.facts();
    const FileCard card = cards_of(facts).front();
    const std::vector<ScopeSymbol>& s = facts.symbols;
    EXPECT_EQ(card.most_used, (models::Excerpt<UsedDeclaration>{{{&s[2], 5}, {&s[1], 3}, {&s[3], 3}}, 5}));
    EXPECT_EQ(card.most_used.left_out(), 2);
    EXPECT_FALSE(card.is_used_inside_only);
}

TEST(FileCards, ShowTheDeclarationsThatThePageUsesWhereNothingOutsideUsesAny) {
    PageBuilder page;
    page.files = {{1, "a.ts", {}}, {2, "b.ts", {}}};
    page.symbols = {symbol(1, "one"), symbol(2, "two"), symbol(3, "unused").in("b.ts")};
    page.inbound = {from("x.ts").to(1).times(0), from("b.ts").to(2).times(2)};
    const ScopeFacts facts = page.facts();
    const std::vector<FileCard> cards = cards_of(facts);
    EXPECT_EQ(cards[0].most_used, (models::Excerpt<UsedDeclaration>{{{&facts.symbols[1], 2}}, 1}));
    EXPECT_TRUE(cards[0].is_used_inside_only);
    EXPECT_FALSE(cards[1].is_used_inside_only);
}

TEST(FileCards, ShowTheFilesThatUseAFileMostAndTheFirstOfItsTests) {
    PageBuilder page;
    page.files = {{1, "a.ts", {}}, {2, "b.ts", {}}};
    page.inbound = {from("z.ts"),          from("y.ts").times(4), from("b.ts").times(4),
                    from("x.ts").times(2), from("a.ts").times(9), from("y.ts").times(1)};
    page.test_imports = {{"a.ts", {"test/4.ts", "test/3.ts", "test/1.ts", "test/2.ts"}}};
    const FileCard card = cards_of(page.facts()).front();
    EXPECT_EQ(card.users, (models::Excerpt<FileUser>{{{"y.ts", 5}, {"b.ts", 4}, {"x.ts", 2}}, 4}));
    EXPECT_EQ(card.tests, (models::Excerpt<Text>{{"test/1.ts", "test/2.ts", "test/3.ts"}, 4}));
}

}  // namespace
}  // namespace wiki::scope
