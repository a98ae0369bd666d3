#include "host/rules/test_paths.h"

#include "utils/path_filter.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace host {
namespace {

TEST(TestPaths, AFolderOrAFileNameMakesATest) {
    for (const char* path : {"test/a.c",        "src/tests/a.c",  "a/__tests__/b.js",   "spec/x.rb",
                             "a/specs/b/c.rb",  "e2e/a.ts",       "App.Tests/A.cs",     "src/androidTest/A.kt",
                             "conftest.py",     "src/test_a.py",  "a/b_test.go",        "a.test.ts",
                             "a/b.spec.d.ts",   "a-test.mjs",     "a_spec.rb",          "a.e2e-spec.ts",
                             "a.cy.tsx",        "a.e2e.ts",       "src/StackTest.java", "StackTests.cs",
                             "StackSpec.scala", "FooTestCase.php"}) {
        EXPECT_TRUE(utils::is_test_path(path)) << path;
    }
    for (const char* path : {"", "/", "test", "src/tests", "latest/a.c", "Tests/a.c", "testing/a.c", "a_test",
                             "attest.py", "contest.py", "a/my_conftest.py", "test.c", "a.spec", "b_test.d/a.c",
                             "test.py", "Test.java", "Contest.java", "ABTest.ts", "a.cypher"}) {
        EXPECT_FALSE(utils::is_test_path(path)) << path;
    }
}

TEST(TestPaths, RulesInForceComeBeforeNames) {
    const PathRules outer({{"django/test/", false}, {"check", true}});
    const PathRules inner;
    const TestRulesInForce in_force(outer);
    EXPECT_FALSE(utils::is_test_path("django/test/client.py"));
    EXPECT_TRUE(utils::is_test_path("check/a.py"));
    EXPECT_TRUE(utils::is_test_path("tests/a.py"));
    {
        const TestRulesInForce innermost(inner);
        EXPECT_TRUE(utils::is_test_path("django/test/client.py"));
    }
    EXPECT_FALSE(utils::is_test_path("django/test/client.py"));
}

TEST(TestPaths, TheInterruptCheckMayThrow) {
    const PathRules rules;
    const TestRulesInForce in_force(rules, [] { throw std::runtime_error("no longer wanted"); });
    EXPECT_THROW(utils::is_test_path("a.py"), std::runtime_error);
}

}  // namespace
}  // namespace host
