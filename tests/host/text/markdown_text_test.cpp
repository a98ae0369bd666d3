#include "host/text/markdown_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace host {
namespace {

TEST(MarkdownText, CannotBreakOutOfItsPlace) {
    EXPECT_EQ(plain_text("type_alias"), "type_alias");
    EXPECT_EQ(plain_text("# [a](b)\r\n`<c>|\\"), R"(\# \[a](b)  \`\<c>|\\)");
    EXPECT_EQ(plain_text("**a** __b__ c_d_ e__f 2 * 3 < 4 & &lt;&#9;"),
              R"(\*\*a\*\* \_\_b\_\_ c_d\_ e__f 2 * 3 < 4 & \&lt;\&#9;)");
    EXPECT_EQ(plain_cell("a|<b>"), R"(a\|\<b>)");
    EXPECT_EQ(code_span("a|b\r\nc"), "`a|b  c`");
    EXPECT_EQ(code_span("a``b`c"), "```a``b`c```");
    EXPECT_EQ(code_span("`"), "`` ` ``");
    EXPECT_EQ(code_span(""), "`  `");
    EXPECT_EQ(code_cell("`a|b"), "`` `a\\|b ``");
    EXPECT_EQ(fenced_block(std::vector<std::string>{"a", "``b````c"}, "c++"), "`````c++\na\n``b````c\n`````\n");
    EXPECT_EQ(fenced_block(std::vector<std::string>{"\ta\r```\x1B"}, ""), "````\n\ta\uFFFD```\uFFFD\n````\n");
    EXPECT_EQ(fenced_block(std::vector<std::string>{}, "two words"), "```\n```\n");
}

}  // namespace
}  // namespace host
