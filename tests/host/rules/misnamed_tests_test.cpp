#include "host/rules/misnamed_tests.h"

#include "host/rules/test_paths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace host {
namespace {

using Paths = std::vector<std::string>;
using Imports = std::vector<std::pair<std::string, std::string>>;

// The patterns of the rules for these files and imports, joined by blanks.
std::string rules(const Paths& paths, const Imports& imports, const Paths& exported = {}) {
    const std::vector<std::string_view> files(paths.begin(), paths.end());
    const auto place = [&](const std::string& path) {
        return static_cast<std::uint32_t>(std::ranges::find(files, path) - files.begin());
    };
    std::vector<FileImport> found;
    for (const auto& [source, target] : imports) {
        found.push_back({place(source), place(target)});
    }
    std::string patterns;
    for (const PathRule& rule : rules_for_misnamed_tests(files, found, exported)) {
        EXPECT_FALSE(rule.holds);
        patterns += (patterns.empty() ? "" : " ") + rule.pattern;
    }
    return patterns;
}

TEST(MisnamedTests, AreFilesThatTheCodeAroundTheirFolderImports) {
    EXPECT_EQ(rules({"a/index.ts", "a/test/x.ts"}, {{"a/index.ts", "a/test/x.ts"}}), "/a/test/");
    EXPECT_EQ(rules({"a/b/testing.py", "a/m.py", "a/tests/x.py"}, {{"a/b/testing.py", "a/tests/x.py"}}), "/a/tests/");
    const Paths imports_of_tests{"a/test/x.ts", "a/index.ts", "a/test/y.ts", "a/b.test.ts"};
    EXPECT_EQ(rules(imports_of_tests, {{"a/b.test.ts", "a/test/x.ts"}, {"a/test/y.ts", "a/test/x.ts"}}), "");
}

TEST(MisnamedTests, IncludeWhatTheyImportAndTheRestOfAFolderThatIsMostlyThem) {
    const Paths paths{"a/m.py", "a/test/f.py", "a/test/g.py", "a/test/h.py", "a/test/i.py", "a/test/j.py"};
    const Imports chain{{"a/m.py", "a/test/f.py"}, {"a/test/f.py", "a/test/g.py"}};
    EXPECT_EQ(rules(paths, chain), "/a/test/f.py /a/test/g.py");
    EXPECT_EQ(rules(paths, {chain[0], chain[1], {"a/test/g.py", "a/test/h.py"}}), "/a/test/");
}

TEST(MisnamedTests, GetARuleEachWhereTheirFolderAlsoHoldsTests) {
    for (const char* const test : {"a/test/x.test.ts", "a/test/__tests__/x.ts"}) {
        EXPECT_EQ(rules({"a/index.ts", "a/test/[x].ts", test}, {{"a/index.ts", "a/test/[x].ts"}}), "/a/test/\\[x].ts");
    }
}

TEST(MisnamedTests, ExcludeFilesThatOnlyOtherCodeImports) {
    for (const auto& [source, target] : Imports{{"a/m.ts", "test/x.ts"},
                                                {"b/m.ts", "a/test/x.ts"},
                                                {"a/b/m.ts", "a/test/x.ts"},
                                                {"a/m.rs", "a/tests/x.rs"}}) {
        EXPECT_EQ(rules({source, target}, {{source, target}}), "") << source;
    }
    for (const char* const source : {"a/tests.py", "a/setupTests.ts", "a/benchmarks/b.ts", "a/Button.stories.tsx"}) {
        EXPECT_EQ(rules({"a/index.ts", source, "a/test/x.ts"}, {{source, "a/test/x.ts"}}), "") << source;
    }
}

TEST(MisnamedTests, IncludeWhatAPackageExports) {
    const Paths paths{"test/a.ts", "test/b/c.ts", "test/d.ts", "test/e.ts", "test/f.ts"};
    EXPECT_EQ(rules(paths, {}, {"test/a.js", "test/b/*", "src/d.js"}), "/test/a.ts /test/b/c.ts");
    EXPECT_EQ(rules(paths, {}, {"*", "test*", "package.json"}), "");
}

TEST(MisnamedTests, ExcludeFilesThatARuleCovers) {
    const PathRules said({{"a/test/", true}});
    const TestRulesInForce in_force(said);
    EXPECT_EQ(rules({"a/index.ts", "a/test/x.ts"}, {{"a/index.ts", "a/test/x.ts"}}), "");
}

TEST(MisnamedTests, GetAtMostAHundredRulesOfValidPatterns) {
    Paths paths{"m/index.ts"};
    Imports imports;
    for (int file = 100; file < 300; ++file) {
        paths.push_back("m/test/" + std::to_string(file) + ".ts");
        imports.emplace_back("m/index.ts", paths.back());
    }
    paths.emplace_back("m/test/x.test.ts");
    const std::string patterns = rules(paths, imports);
    EXPECT_EQ(std::ranges::count(patterns, ' '), 99);
    const std::string folder = std::string(4'096, 'a');
    EXPECT_EQ(rules({folder + "/i.ts", folder + "/test/x.ts"}, {{folder + "/i.ts", folder + "/test/x.ts"}}), "");
    EXPECT_EQ(rules({"\xFF/i.ts", "\xFF/test/x.ts"}, {{"\xFF/i.ts", "\xFF/test/x.ts"}}), "");
}

}  // namespace
}  // namespace host
