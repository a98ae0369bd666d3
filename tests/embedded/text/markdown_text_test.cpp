#include "embedded/text/markdown_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace embedded {
namespace {

TEST(MarkdownText, CannotBreakOutOfItsPlace) {
    EXPECT_EQ(plain_text("type_alias"), "type_alias");
    EXPECT_EQ(plain_text("# [a](b)\r\n`<c>|\\"), R"(\# \[a](b)  \`\<c>\|\\)");
    EXPECT_EQ(code_span("a|b\r\nc"), "`a|b  c`");
    EXPECT_EQ(code_span("a``b`c"), "```a``b`c```");
    EXPECT_EQ(code_span("`"), "`` ` ``");
    EXPECT_EQ(code_span(""), "`  `");
    EXPECT_EQ(code_cell("`a|b"), "`` `a\\|b ``");
    EXPECT_EQ(fenced_block(std::vector<std::string>{"a", "``b````c"}, "c++"), "`````c++\na\n``b````c\n`````\n");
    EXPECT_EQ(fenced_block(std::vector<std::string>{}, "two words"), "```\n```\n");
}

}  // namespace
}  // namespace embedded
