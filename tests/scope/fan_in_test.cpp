#include "workers/wiki/scope/fan_in.h"

#include "tests/scope/page_builder.h"

#include <gtest/gtest.h>

namespace wiki::scope {
namespace {

using Counts = OrderedMap<SymbolId, std::int64_t>;

TEST(ProductionFanIn, CountsWhatIsEvidenceOrATrustedNameFromOutsideAndInsideApart) {
    PageBuilder page;
    page.files = {{1, "a.ts", "typescript"}, {2, "b.ts", "typescript"}};
    page.test_sources = {"test/t.ts"};
    page.inbound = {
        from("x.ts").to(2).by("import").times(3),
        from("x.ts").to(2).by("local").kind("constant").times(2),
        from("x.ts").to(1).by("unique").times(4),
        from("x.ts").to(3).by("unique").kind("attribute").times(100),  // a collision of names
        from("x.ts").to(3).by("ambiguous").times(100),
        from("x.ts").to(4).by("legacy").times(100),
        from("x.ts").to(5).times(0),
        from("test/t.ts").to(2).times(100),
        from("b.ts").to(2).times(5),
        from("a.ts").to(6).by("local").times(7),
    };
    const FanIn fan_in = production_fan_in(page.facts());
    EXPECT_EQ(fan_in.outside, (Counts{{2, 5}, {1, 4}, {5, 0}}));
    EXPECT_EQ(fan_in.inside, (Counts{{2, 5}, {6, 7}}));
}

TEST(ProductionFanIn, FindsThePublicTopLevelCodeThatNothingReferences) {
    PageBuilder page;
    page.files = {{1, "a.ts", std::nullopt}};
    page.test_sources = {"test/t.ts"};
    page.symbols = {
        symbol(1, "unreferenced"),
        symbol(2, "by_test").kind("class").lines(10, 20),
        symbol(3, "by_legacy"),
        symbol(4, "by_import"),
        symbol(5, "by_page"),
        symbol(6, "by_collision"),
        symbol(7, "_private"),
        symbol(8, "hidden").hidden(),
        symbol(9, "variable").kind("variable"),
        symbol(10, "member").kind("method").lines(12, 13),
        symbol(11, "in_test").in("test/t.ts"),
        symbol(12, "elsewhere").in("b.ts").lines(12, 13),  // the lines of another file's type
    };
    page.inbound = {from("test/t.ts").to(2), from("x.ts").to(3).by("legacy"),    from("x.ts").to(4),
                    from("a.ts").to(5),      from("x.ts").to(6).by("ambiguous"), from("test/t.ts").to(1)};
    EXPECT_EQ(production_fan_in(page.facts()).entry, (OrderedSet<SymbolId>{1, 2, 3, 12}));
}

TEST(FileUsers, AreOtherProductionFilesInTheOrderOfTheirFirstUse) {
    PageBuilder page;
    page.files = {{1, "a.ts", "typescript"}, {2, "b.lua", "lua"}};
    page.import_resolved_paths = {"a.ts"};
    page.test_sources = {"test/t.ts"};
    page.inbound = {
        from("y.ts").to(1, "b.lua").by("unique").times(2),
        from("y.ts").to(2, "b.lua").by("unique").kind("constant"),  // a collision of names
        from("y.ts").to(3, "a.ts").by("unique"),                    // its imports are resolved: no evidence
        from("a.ts").to(3, "a.ts"),                                 // itself
        from("test/t.ts").to(3, "a.ts"),
        from("b.lua").to(3, "a.ts").times(4),
        from("x.ts").to(3, "a.ts"),
        from("b.lua").to(4, "a.ts"),
    };
    EXPECT_EQ(file_users(page.facts()), (FileUsers{{"b.lua", {{"y.ts", 2}}}, {"a.ts", {{"b.lua", 5}, {"x.ts", 1}}}}));
}

TEST(FileUsers, AddReferencesOneAfterTheOther) {
    PageBuilder page;
    constexpr std::int64_t MOST = std::numeric_limits<std::int64_t>::max();
    const Text x = "x.ts";
    const Text y = "y.ts";
    const Text z = "z.ts";
    const Text w = "w.ts";
    for (const auto& [source, times] : std::vector<std::pair<Text, std::int64_t>>{
             {x, MOST}, {y, -9}, {z, 2}, {z, 3}, {x, 5}, {x, -5}, {y, MOST}, {y, 5}, {w, MOST - 2}, {w, 5}, {w, -1}}) {
        page.inbound.push_back(from(source).times(times));
    }
    EXPECT_EQ(file_users(page.facts()),
              (FileUsers{{"a.ts", {{"x.ts", MOST - 5}, {"y.ts", MOST - 4}, {"z.ts", 5}, {"w.ts", MOST - 1}}}}));
}

}  // namespace
}  // namespace wiki::scope
