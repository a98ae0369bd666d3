#include "workers/wiki/scope/render.h"

#include "tests/scope/page_builder.h"

#include <gtest/gtest.h>

namespace wiki::scope {
namespace {

// The lines below the introduction of a block without a heading.
std::string items_of(const Consumers& consumers) {
    const std::string block = render_consumers(consumers, "");
    return block.substr(block.find('\n', 2) + 1);
}

TEST(RenderedFileCards, AreARowForEachFile) {
    const ScopeSymbol used = symbol(1, "us|ed").lines(40, 41);
    const std::vector<FileCard> cards{
        {.path = "src/a|a.ts",
         .is_indexed = true,
         .lines = 120,
         .declarations = 6,
         .summary = "Says a|b\nand more",
         .most_used = {.shown = {{&used, 5}, {&used, 3}}, .total = 4},
         .users = {.shown = {{"p/q/x.ts", 3}, {"r//x.ts", 2}, {"/z|z.ts", 1}}, .total = 4},
         .tests = {.shown = {"test/deep/1.ts", "test/|2.ts"}, .total = 2}},
        {.path = "b.ts",
         .is_indexed = true,
         .most_used = {.shown = {{&used, 2}}, .total = 1},
         .is_used_inside_only = true},
        {.path = "src/gone.ts"}};
    const std::string table = render_file_cards(cards, "# Cards");
    EXPECT_TRUE(table.starts_with("# Cards\n\nEvery file of this page"));
    EXPECT_EQ(table.substr(table.find("---|\n") + 5),
              "| `src/a|a.ts` | 120 | 6 | Says a\\|b and more | `us\\|ed` L40 (5), `us\\|ed` L40 (3) +2 | "
              "q/x.ts, /x.ts, /z\\|z.ts +1 | test/deep/1.ts, test/\\|2.ts |\n"
              "| `b.ts` | ? | 0 |  | `us\\|ed` L40 (in-page 2) |  |  |\n"
              "| `src/gone.ts` | ? | 0 | not in the index | | | |\n");
}

TEST(RenderedConsumers, AreLinesInTheOrderOfTheValues) {
    const ScopeSymbol large = symbol(1, "large").in("b.ts").lines(20, 40);
    Consumers consumers{.files = {.shown = {{"b.ts", 9, {.shown = {{"two", 4}, {"one", 3}}, .total = 5}}}, .total = 3},
                        .uncounted = {{"ambiguous", 2}, {"unique", 3}},
                        .uncounted_files = 2,
                        .unused = {.shown = {&large, &large}, .total = 2}};
    const std::string unused = "Used by no production file outside this page: `large` (function, `b.ts:L20`), `large` "
                               "(function, `b.ts:L20`)";
    const std::string ending = " (code used inside the page, entry points, and code reached dynamically or "
                               "by name can still be live).\n";
    EXPECT_EQ(items_of(consumers),
              "- `b.ts` uses `two`, `one` +3 (9 refs)\n"
              "- _...and 2 more files_\n"
              "Not counted: 2 `ambiguous`, 3 `unique` references from 2 other files that match a name "
              "only (an attribute or a call that shares a name with a declaration here).\n" +
                  unused + ending);
    consumers.unused.total = 9;
    EXPECT_TRUE(items_of(consumers).ends_with(unused + " and 7 more" + ending));
    consumers.uncounted_files = 1;
    EXPECT_NE(items_of(consumers).find(" references from 1 other file that match"), std::string::npos);
}

TEST(RenderedConsumers, OfAPageThatNothingUsesAreNone) {
    EXPECT_EQ(items_of({}), "0 production consumers: no production file outside this page reaches its code "
                            "through an `import` or `local` edge.\n");
}

TEST(RenderedConsumers, AreCalledLikelyWhereImportsAreNotResolved) {
    const std::string block = render_consumers(Consumers{.unresolved_languages = {"", "lua"}}, "# Users");
    EXPECT_TRUE(
        block.starts_with("# Users\n\nThe index does not resolve imports for files of unknown language, lua, so"));
    EXPECT_TRUE(block.ends_with(" reaches its code by a unique name.\n"));
}

}  // namespace
}  // namespace wiki::scope
