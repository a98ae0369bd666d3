#include "utils/path_filter.h"

#include <gtest/gtest.h>

namespace {

TEST(PathFilter, ATestIsToldByItsFolderOrItsName) {
    for (const char* path : {"test/a.c", "src/tests/a.c", "a/__tests__/b.js", "spec/x.rb", "a/specs/b/c.rb",
                             "conftest.py", "src/test_a.py", "a/b_test.go", "a.test.ts", "a/b.spec.d.ts"}) {
        EXPECT_TRUE(utils::is_test_path(path)) << path;
    }
    for (const char* path : {"", "/", "test", "src/tests", "latest/a.c", "Tests/a.c", "testing/a.c", "a_test",
                             "attest.py", "contest.py", "a/my_conftest.py", "test.c", "a.spec", "b_test.d/a.c"}) {
        EXPECT_FALSE(utils::is_test_path(path)) << path;
    }
}

}  // namespace
