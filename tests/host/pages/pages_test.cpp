// `wiki-scope pages`, and the pages of a wiki that the server offers.

#include "host/text/split_lines.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

class Pages : public IndexedFolder {
  protected:
    Pages() {
        folder.write("src/a.ts", "// Adds.\nexport function add() {}\n");
        folder.write("src/b.ts", "import { add } from './a'\nadd()\n");
        folder.write("lib/c.ts", "import { add } from '../src/a'\nadd()\n");
        folder.write("lib/left.ts", "export const left = 1\n");
        change("INSERT INTO meta VALUES('checkout', '" + folder / "" + "')");
        add<FileRow>({{1, "src/a.ts", "typescript"},
                      {2, "src/b.ts", "typescript"},
                      {3, "lib/c.ts", "typescript"},
                      {4, "lib/left.ts", "typescript"},
                      {5, "lib/left.test.ts", "typescript"}});
        add<DeclarationRow>({{1, 1, "add", "add", "function", true, 2, 2, 1}});
        add<DescriptionRow>({{1, "function add()", ""}});
        add<EdgeRow>({{2, 1, IMPORT, 1}, {3, 1, IMPORT, 2}});
        folder.write("wiki.toml", "[[page]]\n"
                                  "title = 'The *first*'\n"
                                  "paths = ['src']\n"
                                  "[[page]]\n"
                                  "title = 'Adding'\n"
                                  "name = 'deep/adding'\n"
                                  "paths = ['src/a.ts', 'lib/c.ts']\n"
                                  "no-source = true\n");
    }

    [[nodiscard]] Outcome pages(const std::string& arguments) const {
        return run("pages wiki.toml --out docs --index index.db --checkout . " + arguments);
    }

    [[nodiscard]] std::int64_t written(const std::string& file) const {
        struct stat status {};
        stat((folder / file).c_str(), &status);
        return status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec;
    }

    // The text of a page below its stamp.
    [[nodiscard]] std::string text(const std::string& file) const {
        const std::string all = folder.read(file);
        return all.substr(std::min(all.find('\n'), all.size()));
    }
};

TEST_F(Pages, AreWrittenWhereTheyDifferAndSaidWhy) {
    const Outcome first = pages("");
    EXPECT_EQ(first.exit_code, 0) << first.err;
    EXPECT_EQ(first.out, "The *first*: new\nAdding: new\n");
    EXPECT_EQ(first.err, "wiki-scope: src/a.ts: on 2 pages: The *first*, Adding\n"
                         "wiki-scope: production files on no page: 1 (--uncovered lists them)\n"
                         "wiki-scope: 2 pages written, 0 unchanged\n");
    const std::string page = "page src/a.ts lib/c.ts --no-source --index index.db --checkout .";
    EXPECT_EQ(text("docs/the-first.md"),
              "\n\n# The \\*first\\*\n\n" + run("page src --index index.db --checkout .").out);
    EXPECT_EQ(text("docs/deep/adding.md"), "\n\n# Adding\n\n" + run(page).out);

    const std::int64_t before = written("docs/the-first.md");
    EXPECT_EQ(pages("").out, "");
    EXPECT_EQ(pages("--check").exit_code, 0);
    EXPECT_EQ(written("docs/the-first.md"), before);

    change("UPDATE descriptions SET signature = 'function add(a)'; DELETE FROM edges WHERE source_file_id = 3");
    const std::string told =
        "The *first*: `add` has another signature; 1 user fewer; `lib/c.ts` is no longer listed as "
        "a user; `add` is listed as unused now; `src/a.ts` has other most used declarations; ";
    const Outcome check = pages("--check");
    EXPECT_EQ(check.exit_code, 1);
    EXPECT_TRUE(check.out.starts_with(told)) << check.out;
    EXPECT_EQ(written("docs/the-first.md"), before);
    const Outcome second = pages("");
    EXPECT_EQ(second.exit_code, 0);
    EXPECT_EQ(second.out, check.out);
    EXPECT_EQ(pages("--check").exit_code, 0);
}

TEST_F(Pages, OfSomebodyElseAreKept) {
    const std::string not_ours = "is not as wiki-scope wrote it; remove it to have it written anew\n";
    folder.write("docs/the-first.md", "By hand.\n");
    const Outcome first = pages("");
    EXPECT_EQ(first.exit_code, 1);
    EXPECT_NE(first.err.find("The *first*: docs/the-first.md " + not_ours), std::string::npos) << first.err;
    EXPECT_EQ(folder.read("docs/the-first.md"), "By hand.\n");

    folder.write("docs/deep/adding.md", folder.read("docs/deep/adding.md") + "More.\n");
    EXPECT_EQ(pages("--check").out, "The *first*: the file is not as wiki-scope wrote it\n"
                                    "Adding: the file is not as wiki-scope wrote it\n");
    EXPECT_EQ(pages("").exit_code, 1);
    EXPECT_TRUE(folder.read("docs/deep/adding.md").ends_with("More.\n"));

    std::filesystem::remove(folder / "docs/the-first.md");
    std::filesystem::create_symlink(folder / "elsewhere.md", folder / "docs/the-first.md");
    const Outcome linked = pages("");
    EXPECT_EQ(linked.exit_code, 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere.md"));
    EXPECT_EQ(linked.err, "wiki-scope: docs/the-first.md: a symbolic link, which is not followed; remove it\n");
}

TEST_F(Pages, ThatAreGoneStayUntilTheyArePruned) {
    EXPECT_EQ(pages("").exit_code, 0);
    folder.write("wiki.toml", "[[page]]\ntitle = 'The first'\npaths = ['src']\n");
    const std::string gone = "docs/deep/adding.md: of no page of the wiki";
    const Outcome kept = pages("");
    EXPECT_EQ(kept.out, "The first: another title\n");
    EXPECT_NE(kept.err.find("wiki-scope: " + gone + "; remove it with --prune\n"), std::string::npos) << kept.err;
    EXPECT_EQ(pages("--prune --check").out, gone + "\n");
    EXPECT_TRUE(std::filesystem::exists(folder / "docs/deep/adding.md"));
    EXPECT_EQ(pages("--prune").out, gone + "\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "docs/deep"));
    EXPECT_EQ(pages("--prune --check").exit_code, 0);
    EXPECT_EQ(folder.read("docs/.wiki-scope-pages.json").find("adding"), std::string::npos);
    // A record that leads out of the folder is none.
    folder.write("docs/.wiki-scope-pages.json", R"({"../wiki.toml": {}})");
    EXPECT_EQ(pages("--prune").err,
              "wiki-scope: docs/.wiki-scope-pages.json: not a record of what pages state; remove it\n");
}

TEST_F(Pages, AreWrittenAllOrNoneButForThoseThatCannotBeMade) {
    folder.write("docs/deep", "a file where a folder must be");
    const Outcome blocked = pages("");
    EXPECT_EQ(blocked.exit_code, 1);
    EXPECT_NE(blocked.err.find("docs/deep"), std::string::npos) << blocked.err;
    EXPECT_FALSE(std::filesystem::exists(folder / "docs/the-first.md"));
    EXPECT_EQ(shell("ls -A docs").out, "deep\n");  // nor is anything left over

    folder.write("wiki.toml", "[defaults]\nmax-bytes = 900\n[[page]]\ntitle = 'A'\npaths = ['src']\n"
                              "[[page]]\ntitle = 'B'\npaths = ['none']\n"
                              "[[page]]\ntitle = 'C'\npaths = ['lib', 'none']\nmax-bytes = 10\n"
                              "[[page]]\ntitle = 'D'\npaths = ['lib', 'none']\nstrict = true\n");
    const Outcome some = pages("");
    EXPECT_EQ(some.exit_code, 1);
    EXPECT_EQ(some.out, "A: new\n");
    EXPECT_LE(folder.read("docs/a.md").size(), 900U);
    for (const std::string line : {"B: none: not in the index", "C: too few bytes", "D: none: not in the index",
                                   "1 page written, 0 unchanged; not all could be made"}) {
        EXPECT_NE(some.err.find("wiki-scope: " + line), std::string::npos) << some.err;
    }
}

TEST_F(Pages, TellWhatTheyCover) {
    const Outcome uncovered = run("pages wiki.toml --uncovered --index index.db");
    EXPECT_EQ(uncovered.out, "lib/left.ts\n");  // no test
    EXPECT_EQ(uncovered.err, "wiki-scope: src/a.ts: on 2 pages: The *first*, Adding\n");
    folder.write("wiki.toml", "[defaults]\ntest = ['left.ts']\nnot-test = ['*.test.ts']\n" + folder.read("wiki.toml"));
    EXPECT_EQ(run("pages wiki.toml --uncovered --index index.db").out, "lib/left.test.ts\n");
    const std::string wiki = folder.read("wiki.toml");
    folder.write("wiki.toml", wiki + "[[page]]\ntitle = 'Here'\npaths = ['" + folder / "lib/left.test.ts" + "']\n");
    EXPECT_EQ(run("pages wiki.toml --uncovered --index index.db --checkout .").out, "");  // as `page` finds it
    EXPECT_EQ(run("pages wiki.toml --uncovered --check --index index.db").exit_code, 2);
    EXPECT_EQ(run("pages wiki.toml --index index.db").exit_code, 2);  // without --out
}

TEST_F(Pages, AreASiteInHtml) {
    add<DeclarationRow>({{2, 3, "c", "c", "function", true, 1, 1, 0}, {3, 3, "c", "c", "function", true, 2, 2, 1}});
    add<EdgeRow>({{2, 3, IMPORT, 1}});
    EXPECT_EQ(pages("--format html --source-url 'https://forge.example/{path}#L{first}'").out,
              "The *first*: new\nAdding: new\nindex: new\n");
    const std::string page = folder.read("docs/deep/adding.html");
    EXPECT_NE(page.find("https://forge.example/src/a.ts#L2"), std::string::npos) << page;
    const std::string site = folder.read("docs/index.html");
    for (const std::string link : {"the-first.html", "the-first.html#file:src/a.ts", "the-first.html#src/a.ts:add",
                                   "deep/adding.html#file:lib/c.ts"}) {
        EXPECT_NE(site.find("href=\"" + link + "\""), std::string::npos) << link << site;
        const std::size_t anchor = link.find('#');
        const std::string target = folder.read("docs/" + link.substr(0, anchor));
        EXPECT_NE(target.find(anchor == std::string::npos ? "<h1>" : "id=\"" + link.substr(anchor + 1) + "\""),
                  std::string::npos)
            << link;
    }
    EXPECT_NE(page.find("href=\"../the-first.html#file:src/b.ts\""), std::string::npos) << page;
    const std::string first = folder.read("docs/the-first.html");
    EXPECT_NE(first.find("href=\"deep/adding.html#file:lib/c.ts\""), std::string::npos);
    EXPECT_NE(first.find("href=\"deep/adding.html#lib/c.ts:c:2\""), std::string::npos);
    EXPECT_NE(page.find("id=\"lib/c.ts:c:2\""), std::string::npos);
    EXPECT_EQ(pages("--format html --source-url 'https://forge.example/{path}#L{first}' --check").exit_code, 0);
    EXPECT_NE(pages("--format html --check").out.find("Adding: other options\n"), std::string::npos);
    EXPECT_EQ(pages("--format json --source-url 'https://forge.example/{path}'").exit_code, 2);
    folder.write("docs/index.html", "By hand.\n");
    EXPECT_EQ(pages("--format html").exit_code, 1);
    EXPECT_EQ(folder.read("docs/index.html"), "By hand.\n");
    folder.write("wiki.toml", "[[page]]\ntitle = 'Index'\npaths = ['src']\n");
    EXPECT_EQ(pages("--format html").err,
              "wiki-scope: Index: the name index is that of the file that leads to all pages; set `name`\n");
}

TEST_F(Pages, AreResourcesOfTheServer) {
    EXPECT_EQ(pages("").exit_code, 0);
    const auto asked = [](int id, const std::string& method, const std::string& params) {
        return R"({"jsonrpc":"2.0","id":)" + std::to_string(id) + R"(,"method":")" + method + R"(","params":)" +
               params + "}\n";
    };
    folder.write("asked", asked(1, "initialize", R"({"protocolVersion":"2025-06-18"})") +
                              asked(2, "resources/list", "{}") +
                              asked(3, "resources/read", R"({"uri":"scope://wiki/deep/adding"})") +
                              asked(4, "resources/read", R"({"uri":"scope://wiki/none"})"));
    const Outcome served = run("serve --wiki wiki.toml --index index.db --checkout . <asked");
    EXPECT_EQ(served.exit_code, 0) << served.err;
    std::map<int, nlohmann::json> answers;
    for (const std::string_view line : split_lines(served.out)) {
        const nlohmann::json answer = nlohmann::json::parse(line);
        if (answer.contains("id")) {
            answers[answer["id"]] = answer;
        }
    }
    const nlohmann::json& list = answers[2]["result"]["resources"];
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0]["title"], "The *first*");
    EXPECT_EQ(list[1]["uri"], "scope://wiki/deep/adding");
    EXPECT_EQ(answers[3]["result"]["contents"][0]["text"], folder.read("docs/deep/adding.md"));
    EXPECT_EQ(answers[4]["error"]["code"], -32002);
}

TEST_F(Pages, RefuseAFaultyWikiByItsLine) {
    const std::string page = "[[page]]\ntitle = 'A'\npaths = ['src']\n";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "1: a wiki needs pages, each of which begins with [[page]]"},
        {"page = 3", "1: a wiki needs pages"},
        {"x = 1\n" + page, "1: unknown key `x`; the keys are defaults and page"},
        {page + "totel = 1\n", "4: unknown key `totel`; the keys are title, name, paths, total, "},
        {"[defaults]\ntitle = 'A'\n" + page, "2: unknown key `title`; the keys are total, "},
        {"defaults = 1\n" + page, "1: `defaults` must be a table"},
        {"[[page]]\npaths = ['src']\n", "1: a page needs a `title`"},
        {"\n[[page]]\ntitle = 'A'\n", "2: a page needs `paths`"},
        {"[[page]]\ntitle = 'A'\npaths = 'src'\n", "3: `paths` must be a list of strings"},
        {"[[page]]\ntitle = ''\npaths = ['src']\n", "2: `title` must be a text on one line"},
        {"[[page]]\ntitle = '?'\npaths = ['src']\n", "1: the title gives no name for a file"},
        {page + "name = '../a'\n", "4: `name` must be a path in the wiki's folder"},
        {page + "name = '/a'\n", "4: `name` must be"},
        {page + "name = 'a/.b'\n", "4: `name` must be"},
        {page + page, "4: another page has the same title: A"},
        {page + "[[page]]\ntitle = ' a!'\npaths = ['src']\n", "4: another page has the same name: a; set `name`"},
        {page + "total = -1\n", "4: `total` must be a whole number that is not negative"},
        {page + "total = 1.5\n", "4: `total` must be"},
        {page + "max-share = 2\n", "4: `max-share` must be a number from 0 to 1"},
        {page + "strict = 'yes'\n", "4: `strict` must be true or false"},
        {page + "only = ['files', 'nothing']\n", "4: no such section: nothing; the sections are files, "},
        {page + "test = ['" + std::string(5000, 'a') + "']\n", "4: aaa"},
        {page + "total = \n", "4: "},
    };
    for (const auto& [text, message] : cases) {
        folder.write("wiki.toml", text);
        const Outcome outcome = pages("");
        EXPECT_EQ(outcome.exit_code, 1) << text;
        EXPECT_TRUE(outcome.err.starts_with("wiki-scope: wiki.toml:" + message)) << text << "\n" << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(run("pages none.toml --out docs --index index.db").err, "wiki-scope: none.toml: no such file\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "docs"));
}

}  // namespace
}  // namespace host
