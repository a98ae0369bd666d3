#include "tests/scope/page_builder.h"
#include "workers/wiki/scope_tests.h"

#include <gtest/gtest.h>

namespace wiki {
namespace {

TEST(TestsReaching, ReferToItsFilesAndStandInPathOrderByTheFilesOfThePage) {
    scope::PageBuilder page;
    page.files = {{1, "b.ts", {}}, {2, "a.ts", {}}, {3, "c.ts", {}}};
    page.inbound = {scope::from("test/2.ts").to(1, "a.ts").by("unique"), scope::from("test/2.ts").to(2, "b.ts"),
                    scope::from("test/1.ts").to(1, "a.ts"), scope::from("x.ts").to(3, "c.ts"),
                    scope::from("c.ts").to(3, "c.ts").by("local")};
    page.test_sources = {"test/1.ts", "test/2.ts", "c.ts"};
    const TestsReaching reaching = tests_reaching(page.facts());
    EXPECT_EQ(reaching.tests, (std::vector<models::Text>{"test/1.ts", "test/2.ts"}));
    EXPECT_EQ(reaching.tests_by_file, (models::OrderedMap<models::Text, std::vector<models::Text>>{
                                          {"b.ts", {"test/2.ts"}}, {"a.ts", {"test/1.ts", "test/2.ts"}}}));
}

}  // namespace
}  // namespace wiki
