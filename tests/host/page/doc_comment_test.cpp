// Doc comments as the prose of a page.

#include "host/page/doc_comment.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

void expect_leads(const std::vector<std::pair<std::string, std::string>>& cases) {
    for (const auto& [documentation, lead] : cases) {
        EXPECT_EQ(lead_of(documentation), lead) << documentation;
    }
}

TEST(DocComment, IsParagraphsAndListsOnLinesOfTheirOwn) {
    expect_leads({
        {"", ""},
        {"One\ntwo.\n\nThree.", "One two.\n\nThree."},
        {"Either:\n- one\n  more\n* two\n\n1. three\nand so on.", "Either:\n\n- one more\n* two\n1. three and so on."},
        {"- one\n\n    still of it", "- one\n\n  still of it"},
        {"One.\n<p>\nTwo.\n<p>Three.", "One.\n\nTwo.\n\nThree."},
    });
}

TEST(DocComment, KeepsTheShapeOfLists) {
    expect_leads({
        {"* a\n  * b\n\tmore\n    + c\n  * d\n* e\n\nf", "* a\n  * b more\n    + c\n  * d\n* e\n\nf"},
        {"1. a\n   - b\n\n     c\n\n   d\n10) e\n     - f", "1. a\n   - b\n\n     c\n\n   d\n10) e\n    - f"},
        {"Some of:\n  - a\n      - b\n    c\n  - d", "Some of:\n\n- a\n  - b c\n- d"},
        {"- a\n  3. b\n  4. c", "- a\n\n  3. b\n  4. c"},
        {"- a\n\n      code *x*\n\n        {}\n\n  b", "- a\n\n  ```\n  code *x*\n\n    {}\n  ```\n\n  b"},
        {"1. a:\n   ```js run\n   x ````\n\n     ```` y\n   ````\n   b\n2. ~~~\n   y\nc",
         "1. a:\n\n   `````js\n   x ````\n\n     ```` y\n   `````\n\n   b\n2. ```\n   y\n   ```\n\nc"},
        {"- a\n\nb:\n\n    code", "- a"},
        {"1. <br>\n   - a\n2. b", "- a\n2. b"},
        {"1234567890. a", "1234567890. a"},
    });
}

TEST(DocComment, EndsBeforeWhatIsNoProse) {
    for (const std::string other :
         {"```\ncode", "~~~\ncode", "\n    code", "# Title", "Title\n=====", "Title\n-----", "![](a.png)", "| a | b |",
          ".. note:: x", ">>> code()", "<pre>code", ":param x: it", "Args:\n  x: it", ":return: it"}) {
        EXPECT_EQ(lead_of("Says it.\n" + other + "\n\nmore"), "Says it.") << other;
    }
    expect_leads({
        {"Says it. For example::\n\n    code", "Says it."},
        {"Says it.\n\nFor example:\n\n```\ncode", "Says it."},
        {"Says it:\n\nlike this.", "Says it:\n\nlike this."},
        {"#hash and | bar", "\\#hash and | bar"},
    });
}

TEST(DocComment, KeepsTheNamesBehindLinksAndRoles) {
    expect_leads({
        {"{@link Foo}, {@link Foo|the foo}, {@linkcode Foo the `foo`}, {@code a<b}, {@x", "`Foo`, the foo, the `foo`, "
                                                                                          "`a<b`, {@x"},
        {":class:`~a.Foo`, :py:meth:`the foo <a.Foo.x>`, x:y`z`", "`a.Foo`, `the foo`, x:y`z`"},
        {"``a``, `text <url>`_ and `Foo`_.", "`a`, `text` and `Foo`."},
        {"[a *b*](url) [c] [d](", R"(a \*b\* \[c] \[d]()"},
        {"<b>a</b> <code>b<c></code> <a href='x'>d</a> Array<string> <T> a < b <br/>",
         R"(a `b<c>` d Array\<string> \<T> a < b)"},
    });
}

TEST(DocComment, CannotBreakOutOfItsPlace) {
    expect_leads({
        {R"(a_b _c_ *d* ~e~ \f <script> 2 * 3)", R"(a_b \_c\_ \*d\* \~e\~ \\f \<script> 2 * 3)"},
        {"__init__ and a__b, &lt;", R"(\_\_init\_\_ and a__b, &lt;)"},
        {"`a``b", R"(\`a\`\`b)"},
        {"``a`b``", "``a`b``"},
        {"> a\n> b", "\\> a > b"},
        {"- # a", "- \\# a"},
        {"<p># a <<b>script>", R"(\# a \<script>)"},
        {"{@link A}``b`<img>``", "`A` ``b`<img>``"},
    });
}

}  // namespace
}  // namespace host
