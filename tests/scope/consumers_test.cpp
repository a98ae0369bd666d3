#include "tests/scope/page_builder.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/render.h"

#include <gtest/gtest.h>

#include <string>

namespace wiki::scope {
namespace {

// The lines below the introduction.
std::string consumers_of(const PageBuilder& page) {
    const ScopeFacts facts = page.facts();
    const std::string block = render_consumers(facts, production_fan_in(facts), "# Users");
    return block.substr(block.find('\n', std::string("# Users\n\n").size()) + 1);
}

TEST(Consumers, OfAPageThatNothingUsesAreNone) {
    EXPECT_EQ(consumers_of(PageBuilder()),
              "0 production consumers: no production file outside this page reaches its code "
              "through an `import` or `local` edge.\n");
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
    EXPECT_EQ(consumers_of(page),
              "- `b.ts` uses `three`, `one`, `two`, `four` +1 (9 refs)\n"
              "- `c.ts` uses `one` (9 refs)\n"
              "- `z.ts` uses `one` (9 refs)\n"
              "Not counted: 2 `ambiguous`, 3 `unique` references from 2 other files that match a name "
              "only (an attribute or a call that shares a name with a declaration here).\n");
}

TEST(Consumers, BeyondTwelveAreCounted) {
    PageBuilder page;
    for (char source = 'a'; source < 'a' + 12; ++source) {
        page.inbound.push_back(from(std::string(1, source)).to(1, "page.ts", "one"));
    }
    EXPECT_EQ(consumers_of(page).find("more files"), std::string::npos);
    page.inbound.push_back(from("zz").to(1, "page.ts", "one"));
    EXPECT_TRUE(consumers_of(page).ends_with("- `l` uses `one` (1 refs)\n- _...and 1 more files_\n"));
}

TEST(Consumers, AreLikelyUsesWhereImportsAreNotResolved) {
    PageBuilder page;
    page.files = {
        {1, "a.lua", "lua"}, {2, "b.ts", "typescript"}, {3, "c", ""}, {4, "d", std::nullopt}, {5, "e.lua", "lua"}};
    page.import_resolved_paths = {"b.ts"};
    page.inbound = {from("x.lua").to(1, "a.lua", "one").by("unique").kind("constant")};
    const ScopeFacts facts = page.facts();
    const std::string block = render_consumers(facts, FanIn{{}}, "# Users");
    EXPECT_NE(block.find(" resolve imports for files of unknown language, lua, so the files"), std::string::npos)
        << block;
    EXPECT_NE(block.find(" reaches its code by a unique name.\n"), std::string::npos) << block;
}

TEST(Consumers, AreFollowedByThePublicCodeThatNothingOutsideUses) {
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
    page.inbound = {from("x.ts").to(3, "a.ts", "used")};
    const std::string ending = " (code used inside the page, entry points, and code reached dynamically or "
                               "by name can still be live).\n";
    EXPECT_EQ(consumers_of(page), "- `x.ts` uses `used` (1 refs)\n"
                                  "Used by no production file outside this page: `Type` (class, `a.ts:L50`), `large` "
                                  "(function, `b.ts:L20`), `small` (function, `Z.ts:L20`), `small` (function, "
                                  "`a.ts:L20`)" +
                                      ending);
    for (int id = 10; id < 15; ++id) {
        page.symbols.push_back(symbol(id, "f").lines(70, 71));
    }
    EXPECT_TRUE(consumers_of(page).ends_with("`f` (function, `a.ts:L70`) and 1 more" + ending));
}

}  // namespace
}  // namespace wiki::scope
