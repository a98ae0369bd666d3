// Pages as `wiki-scope page --format html` prints them, without a browser.

#include "host/html/code_html.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace host {
namespace {

const std::string BIDI = "\u202E";  // turns the direction of writing around

class HtmlPage : public IndexedFolder {
  protected:
    HtmlPage() {
        add<FileRow>({{1, "src/a.ts", "typescript"},
                      {2, "src/<b> &\"'.ts", "typescript"},
                      {3, "lib/c.ts", "typescript"},
                      {4, "lib/</script><script>alert(1)</script>.ts", "typescript"}});
        add<LanguageRow>({{"typescript", true}});
        add<DeclarationRow>({{1, 1, "One", "a.One", "class", true, 2, 4},
                             {2, 1, "run", "a.One.run", "method", true, 3, 3},
                             {3, 2, "x<img src=1 onerror=alert(1)>", "b.x", "function", true, 1, 1},
                             {4, 3, "used\" onclick=\"alert(1)", "c.used", "function", true, 5, 6},
                             {5, 1, "run", "a.One.run", "method", true, 4, 4}});
        add<DescriptionRow>({{1, "class One<T>", "Runs <script>alert(1)</script> or `<b>`.\n\n- &lt;one&gt;\n- two"},
                             {3, "", "An ![image](javascript:alert(1)) and [text](javascript:alert(2))."}});
        add<EdgeRow>({{3, 1, IMPORT, 3}, {4, 3, IMPORT, 1}, {1, 4, IMPORT, 5}, {1, 3, LOCAL, 2}});
        folder.write("src/a.ts",
                     "// What <i>it</i> is for.\nclass One {\n  run() { '</code><script>" + BIDI + "'; }\n}\n");
    }

    [[nodiscard]] std::string html(const std::string& arguments) const {
        const Outcome page = run("page --format html --index index.db --checkout . " + arguments);
        EXPECT_EQ(page.exit_code, 0) << page.err;
        return page.out;
    }
};

// What stands in the one group of each match.
std::vector<std::string> all(const std::string& text, const std::string& pattern) {
    std::vector<std::string> found;
    const std::regex regex(pattern);
    for (std::sregex_iterator match(text.begin(), text.end(), regex); match != std::sregex_iterator(); ++match) {
        found.push_back((*match)[1]);
    }
    return found;
}

TEST_F(HtmlPage, ShowsWhateverItIsGivenAsText) {
    const std::string page = html("src");
    std::string tags = page;
    for (const std::string element : {"style", "script"}) {  // its own, once each
        const std::size_t begin = tags.find("<" + element + ">");
        tags.erase(begin, tags.find("</" + element + ">") + element.size() + 3 - begin);
    }
    for (const std::string bad : {"<script", "<img", "<i>", "onerror=\"", " onclick=\"", "javascript:", "style="}) {
        EXPECT_EQ(tags.find(bad), std::string::npos) << bad;
    }
    EXPECT_EQ(page.find(BIDI), std::string::npos);
    for (const std::string shown :
         {"x&lt;img src=1 onerror=alert(1)&gt;", "&lt;b&gt; &amp;&quot;&#39;.ts", "<code>&lt;b&gt;</code>",
          "&lt;script&gt;alert(1)&lt;/script&gt; or", "<li>&lt;one&gt;</li><li>two</li>",
          "&#39;&lt;/code&gt;&lt;script&gt;[U+202E]", "used&quot; onclick=&quot;alert(1)"}) {
        EXPECT_NE(tags.find(shown), std::string::npos) << shown;
    }
}

TEST_F(HtmlPage, LinksOnlyToWhatStandsOnIt) {
    for (const std::string sections :
         {"", " --only files,consumers", " --only outline", " --only declarations,graph"}) {
        const std::string page = html("src none.ts" + sections);
        const std::vector<std::string> ids = all(page, " id=\"([^\"]*)\"");
        const std::set<std::string> targets(ids.begin(), ids.end());
        EXPECT_EQ(targets.size(), ids.size());
        for (const std::string& link : all(page, " href=\"#([^\"]*)\"")) {
            EXPECT_TRUE(targets.contains(link)) << link << sections;
        }
        EXPECT_TRUE(all(page, "(src|href)=\"[^#]").empty());
    }
}

TEST_F(HtmlPage, HasAnchorsThatStay) {
    std::set<std::string> anchors{"file:src/a.ts", "src/a.ts:a.One", "src/a.ts:a.One.run", "src/a.ts:a.One.run:2"};
    const auto are_there = [&](const std::string& page) {
        const std::vector<std::string> ids = all(page, " id=\"([^\"]*)\"");
        const std::set<std::string> all_ids(ids.begin(), ids.end());
        return std::ranges::includes(all_ids, anchors);
    };
    EXPECT_TRUE(are_there(html("src")));
    anchors.insert("src/a.ts:First");  // the path stands there once
    add<DeclarationRow>({{6, 1, "First", "src.a.ts.First", "class", true, 1, 1}});
    change("UPDATE symbols SET start_line = start_line + 9, end_line = end_line + 9 WHERE file_id = 1 AND id < 6");
    EXPECT_TRUE(are_there(html("src/a.ts --only outline,files")));
}

TEST_F(HtmlPage, CitesUsesAndLinksEveryCitationToTheNamedSite) {
    change("UPDATE edges SET first_line = 7 WHERE source_file_id = 3 AND target_id = 1");
    EXPECT_EQ(all(html("src"), "href=\"(http[^\"]*)").size(), 0U);
    const std::string page = html("src/a.ts --source-url 'https://forge.example/{path}?L{first}-{last}'");
    for (const std::string lines : {"src/a.ts?L2-4", "src/a.ts?L3-3", "lib/c.ts?L7-7", "lib/c.ts?L5-6"}) {
        EXPECT_NE(page.find("href=\"https://forge.example/" + lines + "\""), std::string::npos) << lines;
    }
    EXPECT_NE(page.find("first at <a href=\"https://forge.example/lib/c.ts?L7-7\""), std::string::npos);
}

TEST_F(HtmlPage, SharesOutWhatItCountsHoweverMuchThatIs) {
    const auto shares = [&] { return all(html("src --only consumers,graph"), "</svg> ([^<]*)</td>"); };
    change("DELETE FROM edges; INSERT INTO edges(source_file_id, target_id, resolution_id, refs) "
           "VALUES(3, 1, 1, 100), (4, 1, 1, 50)");
    EXPECT_EQ(shares(), std::vector<std::string>({"66 %", "33 %"}));
    change("UPDATE edges SET refs = 9223372036854775807");
    EXPECT_EQ(shares(), std::vector<std::string>({"100 %", "100 %"}));
    change("UPDATE edges SET refs = -9223372036854775807");
    EXPECT_EQ(all(html("src"), "width=\"(-[^\"]*)\"").size(), 0U);
}

TEST_F(HtmlPage, IsWrittenWhereNobodyElseReadsAndOpened) {
    folder.write("bin/xdg-open", "#!/bin/sh\ncat \"$1\" >opened\n");
    const std::string view = R"(chmod +x bin/xdg-open && XDG_CACHE_HOME="$PWD/cache" PATH="$PWD/bin:$PATH" DISPLAY=)";
    const std::string command = " WAYLAND_DISPLAY= wiki-scope view src --index index.db --checkout .";
    const Outcome opened = shell(view + ":0" + command);
    ASSERT_EQ(opened.exit_code, 0) << opened.err;
    EXPECT_EQ(folder.read("opened"), html("src"));
    const Outcome told = shell(view + command);
    EXPECT_EQ(told.out, opened.out);
    EXPECT_EQ(told.err, "wiki-scope: no browser could be opened here; open the file above in one\n");
    EXPECT_EQ(shell("stat -c %a \"$(dirname " + told.out.substr(0, told.out.size() - 1) + ")\"").out, "700\n");
}

TEST_F(HtmlPage, ForbidsABrowserAllButItsStyleAndItsScript) {
    folder.write("page.html", html("src"));
    const Outcome hashes =
        shell("node -e 'const page = require(\"fs\").readFileSync(\"page.html\", \"utf8\");"
              "for (const name of [\"style\", \"script\"]) {"
              "  const text = page.match(new RegExp(`<${name}>([^]*?)</${name}>`))[1];"
              "  const hash = require(\"crypto\").createHash(\"sha256\").update(text).digest(\"base64\");"
              "  console.log(`${name}-src \\u0027sha256-${hash}\\u0027`);"
              "}'");
    ASSERT_EQ(hashes.exit_code, 0) << hashes.err;
    std::string policy = "content=\"default-src 'none'; ";
    for (const std::string& hash : all(hashes.out, "(.+)\n")) {
        policy += hash + "; ";
    }
    EXPECT_NE(folder.read("page.html").find(policy + "base-uri 'none'; form-action 'none'\""), std::string::npos);
}

TEST_F(HtmlPage, SaysWhatIsInDoubtAndHasTheSectionsThatWereAskedFor) {
    EXPECT_NE(html("src none.ts").find("not in the index"), std::string::npos);
    EXPECT_NE(html(".").find("<section id=\"doubts\""), std::string::npos);
    EXPECT_EQ(all(html("src --only seeds,files"), "<section id=\"([^\"]*)\""),
              std::vector<std::string>({"files", "seeds"}));
    EXPECT_EQ(run("page src --index index.db --checkout . --format html --max-bytes 9").exit_code, 2);
}

TEST_F(HtmlPage, DrawsWhoUsesItAndFoldsFoldersUntilThirtyNodesAreLeft) {
    EXPECT_EQ(all(html("src"), "class=\"node (user|page|used)"),
              std::vector<std::string>({"user", "user", "page", "page", "used"}));
    change("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 69) "
           "INSERT INTO files(id, path) SELECT i, iif(i < 50, 'many/', 'few/deep/') || i || '.ts' FROM n;"
           "WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 69) "
           "INSERT INTO edges(source_file_id, target_id, resolution_id, refs) SELECT i, 1, 1, i FROM n");
    const std::string page = html("src --only graph");
    EXPECT_EQ(page, html("src --only graph"));
    const std::vector<std::string> labels = all(page, "class=\"node user folder\"[^>]*aria-label=\"([^\"]*)\"");
    EXPECT_EQ(labels, std::vector<std::string>({"few/deep/, 20 files", "many/, 40 files"}));
    EXPECT_LE(all(page, "class=\"node (user|page|used)").size(), 30U);
    EXPECT_NE(page.find("<td class=\"number\">1190</td>"), std::string::npos);  // 50 + ... + 69
}

TEST_F(HtmlPage, ColorsCodeByWhatItIsInEveryLanguage) {
    const std::string keyword = "<span class=\"k\">";
    const std::string type = "<span class=\"t\">";
    const std::string function = "<span class=\"f\">";
    const std::string number = "<span class=\"n\">";
    const std::string comment = "<span class=\"c\">";
    const std::string string = "<span class=\"s\">";
    const std::string end = "</span>";
    for (const auto& [name, code, html] : std::vector<std::tuple<std::string, std::string, std::string>>{
             {"a.ts", "class A {}", keyword + "class" + end + " " + type + "A" + end + " {}"},
             {"a.tsx", "return 1", keyword + "return" + end + " " + number + "1" + end},
             {"a.js", "f('<') // x", function + "f" + end + "(" + string + "&#39;&lt;&#39;" + end + ") " + comment},
             {"a.py", "return f(1)", keyword + "return" + end + " " + function + "f" + end + "(" + number + "1" + end},
             {"a.go", "func f() {}", keyword + "func" + end + " " + function + "f" + end + "() {}"},
             {"a.rs", "fn f() {}", keyword + "fn" + end + " " + function + "f" + end + "() {}"},
             {"a.java", "class A {}", keyword + "class" + end + " " + type + "A" + end + " {}"},
             {"a.c", "return f(1);", keyword + "return" + end + " " + function + "f" + end + "(" + number + "1" + end},
             {"a.cc", "class A {};", keyword + "class" + end + " " + type + "A" + end + " {};"},
             {"a.txt", "class A {}", "class A {}"}}) {
        EXPECT_TRUE(html::code_html(code, "", name).starts_with(html)) << html::code_html(code, "", name);
    }
}

TEST_F(HtmlPage, TakesFewBytesWithoutSources) {
    change("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 21) "
           "INSERT INTO files(id, path) SELECT i, 'big/' || i || '.ts' FROM n;"
           "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 459) "
           "INSERT INTO symbols(id, file_id, name, fqn, kind, is_export, start_line, end_line, uses) "
           "SELECT i, 10 + i % 12, 'name' || i, 'big.name' || i, 'function', 1, i, i + 9, 0 FROM n");
    constexpr std::size_t MOST = 204'800;
    const std::string page = html("big --no-source");
    EXPECT_LT(page.size(), MOST);
    EXPECT_EQ(page, html("big --no-source"));
}

}  // namespace
}  // namespace host
