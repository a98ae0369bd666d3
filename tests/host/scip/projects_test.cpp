// Several SCIP files in one index: how their paths and symbols come together.

#include "host/scip/project_root.h"
#include "host/scip/symbol.h"
#include "tests/host/scip/import_fixture.h"

namespace host::scip {
namespace {

std::string paths(const std::vector<std::string>& roots, const std::optional<std::string>& checkout) {
    std::vector<std::string> uris;
    for (const std::string& root : roots) {
        uris.push_back(root.empty() ? "" : "file://" + root);
    }
    const Repository repository = repository_of(uris, checkout);
    std::string said = repository.root ? repository.root->string() : "unknown";
    for (const std::string& folder : repository.folders) {
        said += " [" + folder + "]";
    }
    return said;
}

TEST(ScipProjects, LieInTheCheckoutElseInTheDeepestFolderAboveThem) {
    const std::vector<std::tuple<std::vector<std::string>, std::optional<std::string>, std::string>> cases{
        {{"/r0"}, std::nullopt, "/r0 []"},
        {{"/r0/a/"}, "/r0/", "/r0 [a]"},
        {{"/r0/front", "/r0/back"}, std::nullopt, "/r0 [front] [back]"},
        {{"/r0/a/b", "/r0/a"}, std::nullopt, "/r0/a [b] []"},
        {{"/r0/ab", "/r0/a"}, std::nullopt, "/r0 [ab] [a]"},
        {{"/ci/front", "/ci/back/x"}, "/r0", "/ci [front] [back/x]"},
        {{"/r0/a", ""}, std::nullopt, "/r0/a [] []"},
        {{"/r0", "/s0/x"}, std::nullopt, "/ [r0] [s0/x]"},
        {{""}, std::nullopt, "unknown []"},
        {{""}, "/r0", "/r0 []"},
        {{"/r0/my%20a/./c/.."}, "/r0", "/r0 [my a]"},
        {{"/r0/100%/a%20b"}, "/r0", "/r0 [100%/a%20b]"},
    };
    for (const auto& [roots, checkout, expected] : cases) {
        EXPECT_EQ(paths(roots, checkout), expected);
    }
}

TEST(ScipProjects, GiveTheirPathsAFolderThatTheseMayLeave) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases{
        {"", "a.ts", "a.ts"},
        {"p/a", "x/b.ts", "p/a/x/b.ts"},
        {"p/a", "../b/c.ts", "p/b/c.ts"},
        {"p", "../c.ts", "c.ts"},
        {"p", "../../c.ts", ""},
        {"p", "a/../b.ts", ""},
        {"p", "/b.ts", ""},
        {"p", "", ""},
        {"p", "..", ""},
    };
    for (const auto& [folder, path, expected] : cases) {
        EXPECT_EQ(path_in_repository(folder, path).value_or(""), expected) << folder << " " << path;
    }
}

TEST(ScipProjects, HaveNamelessPackagesOfTheirOwn) {
    EXPECT_EQ(of_project("t npm . . src/`a.ts`/f().", "my app"), "t npm . my  app src/`a.ts`/f().");
    for (const char* const symbol :
         {"t npm pkg . src/`a.ts`/f().", "cxx . . $ std/f().", "t npm . . `a.ts`", "t npm . .", "local 1", ""}) {
        EXPECT_EQ(of_project(symbol, "app"), symbol);
    }
}

TEST_F(ScipImport, ReferencesLeadFromOneScipFileIntoAnother) {
    const auto nameless = [](const std::string& file) { return "t npm . . `" + file + "`/main()."; };
    const ScipDocument main = ScipDocument("a.ts").defines(nameless("a.ts")).refers(nameless("a.ts"));
    import_all({{"front", {main, ScipDocument("b.ts").refers(F)}},
                {"back", {main, ScipDocument("lib.ts").defines(F), ScipDocument("../shared/s.ts").refers(F)}}});
    EXPECT_EQ(rows("SELECT path AS row FROM files"), "back/a.ts; back/lib.ts; front/a.ts; front/b.ts; shared/s.ts");
    EXPECT_EQ(edges(), "back/a.ts 1 local 1; front/a.ts 3 local 1; front/b.ts 2 import 1; shared/s.ts 2 import 1");
}

TEST_F(ScipImport, TheOrderInWhichScipFilesAreNamedChangesNothing) {
    const std::vector<ScipDocument> one{ScipDocument("a.ts").defines(F, {4, 0, 1}).refers(G)};
    const std::vector<ScipDocument> other{ScipDocument("a.ts").defines(G, {4, 0, 1}).refers(G)};
    const auto content = [&] { return rows("SELECT name || start_line AS row FROM symbols") + " " + edges(); };
    import_all({{"", one}, {"", other}, {"", one}});
    const std::string expected = content();
    EXPECT_NE(expected.find("a.ts 1 local 2"), std::string::npos) << expected;
    import_all({{"", other}, {"", one}});
    EXPECT_EQ(content(), expected);
}

}  // namespace
}  // namespace host::scip
