// Whole pages as `wiki-scope page` prints them.

#include "host/page/requested_page.h"
#include "tests/host/indexed_folder.h"
#include "tests/host/locations.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

namespace host {
namespace {

using Json = nlohmann::ordered_json;  // equal only in the same order
using Lines = std::vector<std::string>;

static_assert(!std::is_copy_constructible_v<Page> && !std::is_move_constructible_v<Page>);

// One of the pages that stand beside this file.
std::string expected_page(const std::string& name) {
    std::ifstream file(expected_pages() + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The flowchart of a page.
std::string drawn(const std::string& page) {
    const std::string fence = "```mermaid\n";
    const std::size_t begin = page.find(fence) + fence.size();
    return page.substr(begin, page.find("```\n", begin) - begin);
}

std::ptrdiff_t count(const std::string& text, const std::string& part) {
    std::ptrdiff_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

// Two files to make a page of: a class, and a constant that is only matched by its name; two files that use them.
class PrintedPage : public IndexedFolder {
  protected:
    PrintedPage() {
        add<FileRow>({{1, "src/a.ts", "typescript"},
                      {2, "src/b.lua"},
                      {3, "srclib/c.ts", "typescript"},
                      {4, "test/a.test.ts", "typescript"}});
        add<LanguageRow>({{"typescript", true}});
        add<DeclarationRow>({{1, 1, "One", "a.One", "class", true, 2, 4},
                             {2, 1, "run", "a.One.run", "method", true, 3, 3},
                             {3, 2, "TICKS", "b.TICKS", "constant", true, 1, 1},
                             {4, 3, "a|b", "c.a|b", "x|`y", true, 5, 6}});
        add<DescriptionRow>({{1, "class One<\n  T>", "A <thing> to {@link run|run},\nor not.\n\n## More"},
                             {2, "run()", ""},
                             {4, "", "Of another page."}});
        add<EdgeRow>({{3, 1, IMPORT, 3, 7},
                      {1, 1, LOCAL, 4, 2},
                      {4, 1, IMPORT, 1, 1},
                      {3, 3, UNIQUE, 2, 4},
                      {1, 4, IMPORT, 5, 3}});
        folder.write("src/a.ts", "// Says what it is for.\nclass One {\n  run() {}\n}\n");
        folder.write("src/b.lua", "TICKS = '```'\n");
    }

    // What `wiki-scope page ARGUMENTS` prints; it must succeed, and say nothing else.
    [[nodiscard]] std::string print(const std::string& arguments) const {
        const Outcome page = run("page --index index.db --checkout . " + arguments);
        EXPECT_EQ(page.exit_code, 0) << page.err;
        EXPECT_EQ(page.err, "");
        return page.out;
    }

    [[nodiscard]] Json json(const std::string& arguments) const {
        return Json::parse(print("--format json " + arguments));
    }
};

TEST_F(PrintedPage, StatesEverySectionOfTheNamedFilesAndFolders) {
    EXPECT_EQ(print("./src/ none.ts src/a.ts none.ts"), expected_page("page.md"));
}

TEST_F(PrintedPage, StatesTheSameAsJson) {
    Json expected = Json::parse(expected_page("page.json"));
    expected["file_cards_text"] = print("src none.ts --only files");
    std::string consumers = print("src none.ts --only consumers");
    const std::string first_use = "  - first at `srclib/c.ts:L7`\n";
    expected["consumers_text"] = consumers.replace(consumers.find(first_use), first_use.size(), "");
    expected["graph"] = drawn(print("src none.ts --only graph"));
    EXPECT_EQ(json("src none.ts"), expected);
    Json part;
    for (const std::string key : {"missing", "options", "scored", "deep", "seeds"}) {
        part[key] = expected[key];
    }
    EXPECT_EQ(json("src none.ts --only seeds,in-depth"), part);
    EXPECT_TRUE(print("src --format json").ends_with("}\n"));
}

TEST_F(PrintedPage, ListsAsUnusedOnlyWhatNoReferenceMayMean) {
    add<DeclarationRow>(
        {{5, 1, "hip", "a.hip", "function", true, 9, 9}, {6, 1, "hop", "a.hop", "function", true, 9, 9}});
    add<EdgeRow>({{3, 6, UNIQUE, 1}});
    for (const std::string format : {"markdown", "json", "html"}) {
        const std::string consumers = print("src --only consumers --format " + format);
        EXPECT_NE(consumers.find("hip"), std::string::npos) << format;
        EXPECT_EQ(consumers.find("hop"), std::string::npos) << format;
    }
}

TEST_F(PrintedPage, HasNoSummaryThatTheIndexNotesAsShared) {
    EXPECT_EQ(json("src")["facts"]["summaries"]["src/a.ts"], "Says what it is for.");
    change("INSERT INTO meta(key, value) VALUES('shared_summaries', 'Says what it is for.' || char(10))");
    EXPECT_EQ(print("src --only files").find("Says what it is for."), std::string::npos);
}

TEST_F(PrintedPage, GivesSetsInOrderAsJson) {
    EXPECT_EQ(json("srclib src")["facts"]["import_resolved_paths"], Json({"src/a.ts", "srclib/c.ts"}));
}

TEST_F(PrintedPage, HasOnlyTheWantedSectionsInTheirOrder) {
    EXPECT_EQ(print("src --only seeds,files"), print("src --only files") + "\n" + print("src --only seeds"));
}

TEST_F(PrintedPage, QuotesTheLinesThatTheCheckoutHasUnlessToldNotTo) {
    change("UPDATE symbols SET end_line = 99 WHERE id = 1; UPDATE symbols SET start_line = 0 WHERE id = 2;"
           "UPDATE symbols SET kind = 'a' || char(10) || '`b', start_line = 2, end_line = 1 WHERE id = 3;");
    const std::string one =
        "### `One`\n\nclass, `src/a.ts:L2-L99`, 3 uses outside, 4 inside\n\nUsed at `srclib/c.ts:L7`.\n\n"
        "A \\<thing> to run, or not.\n\n";
    const std::string source = "```typescript\nclass One {\n  run() {}\n}\n```\n\n";
    const std::string signature = "```typescript\nclass One<\n  T>\n```\n\n";
    const std::string others = "### `TICKS`\n\na\uFFFD\\`b, `src/b.lua:L2-L2`, 2 uses outside, 0 inside\n\n"
                               "### `run`\n\nmethod, `src/a.ts`, 0 uses outside, 0 inside\n";
    EXPECT_TRUE(print("src --only declarations").ends_with("\n\n" + one + source + others));
    EXPECT_TRUE(print("src --only declarations --no-source")
                    .ends_with("\n\n" + one + signature + others + "\n```typescript\nrun()\n```\n"));
    std::filesystem::remove(folder / "src/a.ts");
    EXPECT_TRUE(print("src --only declarations").ends_with("\n\n" + one + others));
}

TEST_F(PrintedPage, PrintsNoSourceTwiceAndTellsNamesApart) {
    add<DeclarationRow>({{10, 1, "inner", "a.inner", "function", true, 3, 4},
                         {11, 1, "run", "a.run", "function", true, 4, 4},
                         {12, 1, "Two", "a.Two", "class", true, 2, 4},
                         {13, 1, "only", "a.One.only", "method", true, 3, 3}});
    const std::string declarations = print("src --only declarations");
    EXPECT_EQ(count(declarations, "run() {}"), 1);
    for (const std::string block : {"\n### `One`\n", "\n### `One.run`\n", "\n### `run`\n", "\n### `only`\n"}) {
        EXPECT_EQ(count(declarations, block), 1) << block;
    }
    EXPECT_EQ(count(declarations, "Its source is part of that of `One`.\n"), 5);
    const std::string in_depth = "src --only in-depth --deep 9 --deep-per-file 9";
    EXPECT_EQ(count(print(in_depth), "\n- `One.run`\n"), 1);
    EXPECT_EQ(json(in_depth)["deep"], Json({"One", "Two", "inner", "One.run", "only", "run"}));
    EXPECT_EQ(count(print("src --only declarations --no-source"), "Its source"), 0);
    folder.write("src/a.ts", "\nclass One {\n");  // so that nothing is left of what it held
    EXPECT_EQ(count(print("src --only declarations"), "Its source"), 1);
}

TEST_F(PrintedPage, GivesUpSentencesThenSourcesThenUsesThenCommentsThenItems) {
    const auto fitted = [&](const std::string& options, std::size_t most) {
        return print("src " + options + " --max-bytes " + std::to_string(most));
    };
    const std::string files = print("src --only files");
    const std::string rows = "## Files\n" + files.substr(files.find('|'));
    EXPECT_EQ(fitted("--only files", files.size()), files);
    EXPECT_EQ(fitted("--only files", files.size() - 1), rows);
    EXPECT_TRUE(fitted("--only files", rows.size() - 1).ends_with(" |\n\n_...1 more file left out to fit_\n"));
    EXPECT_EQ(fitted("--only files", 50), "## Files\n\n_...2 files left out to fit_\n");
    EXPECT_EQ(fitted("--only seeds", 40), "## Seeds\n- _...2 files left out to fit_\n");

    folder.write("src/a.ts", "\nclass One {\n  run() {" + std::string(300, '-') + "}\n}\n");
    folder.write("src/b.lua", "TICKS = '" + std::string(300, '-') + "'\n");
    const std::vector<std::pair<std::size_t, std::string>> shorter{
        {700, "part of that of `One`.\n\n_...1 source left out to fit_\n"},
        {356, "run()\n```\n\n_...3 sources left out to fit_\n"},
        {342, "run()\n```\n\n_...3 sources, 1 cited use left out to fit_\n"},
        {329, "run()\n```\n\n_...3 sources, 1 cited use, 1 doc comment left out to fit_\n"},
        {300, "inside\n\n_...1 more declaration, 2 sources, 1 cited use, 1 doc comment left out to fit_\n"},
        {90, "## Declarations\n\n_...3 declarations left out to fit_\n"}};
    for (const auto& [most, end] : shorter) {
        EXPECT_TRUE(fitted("--only declarations", most).ends_with(end)) << fitted("--only declarations", most);
    }
}

TEST_F(PrintedPage, FitsIntoAnyNumberOfBytesFromTheLeastThatAFailureNames) {
    const std::string options = "page src srclib none.ts --index index.db --checkout . --max-bytes ";
    const std::string whole = print("src srclib none.ts");
    const std::string failure = run(options + "9").err;
    const std::string beginning = "wiki-scope: too few bytes: the page needs at least ";
    ASSERT_TRUE(failure.starts_with(beginning)) << failure;
    const std::size_t least = std::stoul(failure.substr(beginning.size()));
    EXPECT_LT(least, 700U);
    EXPECT_TRUE(failure.ends_with(std::to_string(least) + " (" + std::to_string((least + 3) / 4) +
                                  " tokens); allow as many, or choose fewer sections\n"));
    const Outcome too_little = run(options + std::to_string(least - 1));
    EXPECT_EQ(too_little.exit_code, 1);
    EXPECT_EQ(too_little.out, "");
    EXPECT_EQ(too_little.err, failure);
    for (std::size_t most = least; most < whole.size(); most += 61) {
        const Outcome page = run(options + std::to_string(most));
        EXPECT_LE(page.out.size(), most);
        EXPECT_EQ(count(page.out, "\n```") % 2, 0) << page.out;
        EXPECT_EQ(count("\n" + page.out, "\n## "), 7) << page.out;
        EXPECT_EQ(count(page.out, "\n|---|"), count(page.out, "---|\n| `")) << page.out;  // no empty table
    }
    EXPECT_EQ(print("src srclib none.ts --max-bytes " + std::to_string(whole.size())), whole);
    EXPECT_EQ(print("src srclib none.ts --max-tokens 400"), print("src srclib none.ts --max-bytes 1600"));
    EXPECT_EQ(print("src srclib none.ts --max-tokens 400 --max-bytes 1000"),
              print("src srclib none.ts --max-tokens 18446744073709551615 --max-bytes 1000"));
    EXPECT_EQ(run("page src --index index.db --checkout . --format json --max-tokens 9").err,
              "wiki-scope: --max-tokens: applies to Markdown only (see wiki-scope page --help)\n");
}

TEST_F(PrintedPage, HasDeclarationsAndFilesWhereThereIsRoomForAPartOfEach) {
    for (RowId id = 10; id < 30; ++id) {
        const std::string path = "src/" + std::string(100, 'x') + std::to_string(id);
        add<FileRow>({{id, path}});
        add<DeclarationRow>({{id, id, "f", "f", "function", true, 1, 1}});
    }
    const std::string page = print("src --max-bytes 4000");
    EXPECT_GE(count(page, "\n### `"), 3) << page;
    EXPECT_GE(count(page, "\n| `src/"), 8) << page;
}

TEST_F(PrintedPage, OutlinesEachFileByItsLinesAndKeepsWhatMattersMost) {
    add<FileRow>({{5, "src/c"}});
    add<DeclarationRow>({{9, 1, "Zero", "a.Zero", "class", false, 1, 1}});
    const std::string beginning =
        "## Outline\n\nThe declarations of each file, in the order of their lines, with their "
        "signatures.\n";
    const std::string others = "\n### `src/b.lua:L1-L1`\n\n- L1-L1 constant `TICKS`\n"
                               "\n### `src/c`\n\nNo declarations.\n\n### `none`\n\nNot in the index.\n";
    EXPECT_EQ(print("src none --only outline"), beginning +
                                                    "\n### `src/a.ts:L1-L4`\n\n- L1-L1 class `Zero`\n"
                                                    "- L2-L4 class `One`: `class One< T>`\n"
                                                    "- L3-L3 method `run`: `run()`\n" +
                                                    others);
    const Json expected = Json::parse(R"json([{"path": "src/a.ts", "lines": 4, "declarations": [
        {"name": "Zero", "kind": "class", "start_line": 1, "end_line": 1, "signature": ""},
        {"name": "One", "kind": "class", "start_line": 2, "end_line": 4, "signature": "class One<\n  T>"},
        {"name": "run", "kind": "method", "start_line": 3, "end_line": 3, "signature": "run()"}]}])json");
    EXPECT_EQ(json("src/a.ts --only outline")["outline"], expected);
    change("UPDATE descriptions SET signature = 'run(' || hex(zeroblob(30)) || ')' WHERE symbol_id = 2");
    EXPECT_EQ(print("src none --only outline --max-bytes 225"),
              "## Outline\n\n### `src/a.ts:L1-L4`\n\n- L2-L4 class `One`: `class One< T>`\n"
              "- _...2 more declarations left out to fit_\n" +
                  others);
}

TEST_F(PrintedPage, EndsWhereverItIsOnceNobodyWantsIt) {
    struct Unwanted {};
    const std::unique_ptr<IndexConnection> connection = served_index()->connect();
    const std::unique_ptr<storage::Database> db = connection->read();
    const auto checks_before_end = [&](int most, const auto& work) {
        int left = most;
        db->watch([&left] { left-- > 0 ? void() : throw Unwanted{}; });
        EXPECT_THROW(work(), Unwanted) << most;
        db->watch([] {});
    };
    const std::vector<std::string> patterns{"src/*", "*/c.ts"};
    for (int most = 0; most < 8; ++most) {  // for each name, and for each file that a pattern is held against
        checks_before_end(most, [&] { find_paths(*db, nullptr, patterns); });
    }
    PageRequest request{.paths = {"src"}, .checkout = folder / ""};
    checks_before_end(3, [&] { const RequestedPage page(request, *db); });
    using Bytes = std::optional<std::size_t>;
    for (const auto& [has_outline, max_bytes, most] :
         {std::tuple(false, Bytes(), 8), std::tuple(true, Bytes(), 4), std::tuple(false, Bytes(700), 11)}) {
        request.only = {};
        if (has_outline) {
            request.only.add(Section::OUTLINE);
        }
        request.max_bytes = max_bytes;
        const RequestedPage page(request, *db);
        std::ostringstream out;
        checks_before_end(most, [&] { page.write(out); });
    }
}

TEST_F(PrintedPage, SaysInOneLineWhatThereIsNothingOf) {
    change("DELETE FROM edges; DELETE FROM symbols");
    EXPECT_EQ(print("src --only declarations,in-depth,dependencies,graph"),
              "## Declarations\n\nNone listed.\n\n## In depth\n\nNone listed.\n\n## Dependencies\n\nNone listed.\n\n"
              "## Graph\n\nNone listed.\n");
}

TEST_F(PrintedPage, DrawsThirtyNodesAtMostWhateverTheirPathsHold) {
    change("UPDATE files SET path = 'src/1. [\"#a`|].ts' WHERE id = 1");
    EXPECT_TRUE(drawn(print("src --only graph")).starts_with(R"(flowchart LR
  file1["srclib/c.ts"]
  subgraph page ["This page"]
    file2["src/1#46; #91;#34;#35;a�#124;#93;.ts"]
)"));
    for (RowId id = 10; id < 60;
         ++id) {  // a declaration in each, which each other file of the page and one outside use
        add<FileRow>({{id, "src/" + std::to_string(id)}, {id + 100, "lib/" + std::to_string(id)}});
        add<DeclarationRow>(
            {{id, id, "f", "f", "function", true, 1, 1}, {id + 100, id + 100, "g", "g", "function", true, 1, 1}});
        add<EdgeRow>({{id + 100, id, IMPORT, id}, {id, id + 100, IMPORT, id}, {id, 10 + (id - 9) % 50, IMPORT, 1}});
    }
    const std::string section = print("src --only graph");
    EXPECT_EQ(count(section, "those of its own that others use most"), 1) << section;
    const std::string graph = drawn(section);
    EXPECT_EQ(count(graph, "[\"") + count(graph, "(\"") - 1, 30) << graph;
    EXPECT_EQ(count(graph, "[\"lib/"), 9) << graph;
    EXPECT_EQ(count(graph, "[\"src/"), 12) << graph;
    EXPECT_NE(graph.find("[\"lib/59\"]"), std::string::npos) << graph;
    EXPECT_NE(graph.find(" -->|59| "), std::string::npos) << graph;
}

TEST_F(PrintedPage, LinksItsCitationsToTheCommitThatWasIndexed) {
    const auto page = [&](const std::string& url) { return run("page src --index index.db --checkout . " + url); };
    const std::string url = "--source-url 'https://forge/o/r/blob/{commit}/{path}?plain#L{first}-L{last}'";
    const Outcome unknown = page(url);
    EXPECT_EQ(unknown.exit_code, 1);
    EXPECT_NE(unknown.err.find(": of no commit that is known; "), std::string::npos) << unknown.err;
    change(
        "INSERT INTO meta(key, value) VALUES('commit', '12ab)'); UPDATE files SET path = 'src/(a)|é.ts' WHERE id = 1");
    const std::string text = page(url).out;
    const std::string base = "](https://forge/o/r/blob/12ab%29/";
    const std::string own = base + "src/%28a%29%7C%C3%A9.ts?plain#L2-L4)";
    EXPECT_EQ(count(text, "class, [`src/(a)|é.ts:L2-L4`" + own + ", 3 uses"), 1) << text;
    EXPECT_EQ(count(text, "- [`src/(a)|é.ts:L2-L4`" + own + "\n"), 1) << text;
    EXPECT_EQ(count(text, " at [`srclib/c.ts:L7`" + base + "srclib/c.ts?plain#L7-L7)"), 2) << text;
    EXPECT_EQ(count(text, "| [`srclib/c.ts:L5-L6`" + base + "srclib/c.ts?plain#L5-L6) |"), 1) << text;
    EXPECT_EQ(count(page("--source-url 'https://forge/main/{path}'").out, "](https://forge/main/srclib/c.ts)"), 3);
    for (const auto& [wrong, says] :
         {std::pair("https://f/{path}/{branch}", "and no other {...}"),
          std::pair("https://f/{path}/{first", "and no other {...}"), std::pair("https://f/{first}", "holds {path}"),
          std::pair("https://f/{path})(", "has no blanks, quotes, brackets"),
          std::pair("javascript:{path}", "begins with https:// or http://")}) {
        const Outcome failed = page("--source-url '" + std::string(wrong) + "'");
        EXPECT_NE(failed.err.find(says), std::string::npos) << failed.err;
        EXPECT_EQ(std::ranges::count(failed.err, '\n'), 1) << failed.err;
    }
}

TEST_F(PrintedPage, HoldsNothingThatARepositoryCouldTakeItOverWith) {
    change("UPDATE files SET path = '__lib__/<b>|`' || char(10) || '## G.ts' WHERE id = 3;"
           "UPDATE files SET path = 'src/a|b.ts' WHERE id = 1;"
           "UPDATE files SET path = 'test/_x_|' || char(27) || '[31m.ts' WHERE id = 4;"
           "UPDATE symbols SET name = 'f`' || char(10, 10) || '## Injected', fqn = char(27) WHERE id = 1;"
           "UPDATE resolutions SET name = '`<b>' || char(13) WHERE id = 3;"
           "UPDATE files SET language = '<img src=x>' WHERE id = 2;"
           "UPDATE descriptions SET signature = '```' || char(13) || '## G', "
           "documentation = 'Says' || char(13) || '## G'");
    folder.write("src/a|b.ts", "// <img onerror=x> __init__\nclass One {\n  // \r```\r## G\x1B\n}\n");
    const std::string page = print("src 'no\n`|.ts'") + print("src --no-source --only declarations");
    const std::string card = "| `src/a\\|b.ts` | 4 | 2 | \\<img onerror=x> \\_\\_init\\_\\_ | "
                             "`f\uFFFD\uFFFD\uFFFD## Injected` L2 (3) | "
                             "\\_\\_lib\\_\\_/\\<b>\\|\uFFFD\uFFFD## G.ts | test/\\_x\\_\\|\uFFFD\\[31m.ts |\n";
    EXPECT_EQ(count(page, "\n" + card), 1) << page;
    EXPECT_EQ(count(page, "\n| ``no\uFFFD`\\|.ts`` | ? | 0 | not in the index | | | |\n"), 1) << page;
    EXPECT_EQ(count(page, "\n- `__lib__/<b>|\uFFFD\uFFFD## G.ts` uses `f\uFFFD\uFFFD\uFFFD## Injected` (3 refs)\n"), 1)
        << page;
    EXPECT_EQ(count(page, "for files of unknown language, so"), 1) << page;
    EXPECT_EQ(count(page, "\n  file1[\"#95;#95;lib#95;#95;/"), 1) << page;
    EXPECT_EQ(count(page, "\nSays\uFFFD## G\n"), 4) << page;
    EXPECT_EQ(count(page, "\n````typescript\nclass One {\n  // \uFFFD```\uFFFD## G\uFFFD\n}\n````\n"), 1) << page;
    EXPECT_EQ(count(page, "\n````typescript\n```\uFFFD## G\n````\n"), 2) << page;
    EXPECT_EQ(page.find_first_of("\x1B\r"), std::string::npos) << page;
    EXPECT_EQ(count(page, "\n## "), 7) << page;
}

TEST_F(PrintedPage, IsChosenByTheNumbersOfItsOptions) {
    add<DeclarationRow>({{11, 1, "f", "", "function", true, 11, 11},
                         {12, 1, "g", "", "function", true, 12, 12},
                         {13, 1, "h", "", "function", true, 13, 13},
                         {21, 2, "C", "", "constant", true, 21, 21},
                         {22, 2, "D", "", "constant", true, 22, 22},
                         {23, 2, "E", "", "constant", true, 23, 23}});
    for (const auto& [options, key, value] : std::vector<std::tuple<std::string, std::string, std::string>>{
             {"", "selection", "[1, 3, 11, 21, 12, 22, 13, 23, 2]"},
             {"--total 6", "selection", "[1, 3, 11, 21, 12, 22]"},
             {"--total 6 --max-share 0.7", "selection", "[1, 3, 11, 21, 12, 13]"},
             {"--total 6 --max-share 0.7 --floor 1", "selection", "[1, 3, 11, 12, 13, 2]"},
             {"", "deep", R"(["One", "f"])"},
             {"--deep 1", "deep", R"(["One"])"},
             {"--deep-per-file 3", "deep", R"(["One", "f", "g"])"},
             {"--neighbours 0", "neighbours", "[]"},
             {"--total 010 --floor=5 --max-share 1e0 --deep 9223372036854775807 --deep-per-file 3 --neighbours 4",
              "options", R"({"total": 10, "floor": 5, "max_share": 1.0, "deep": 9223372036854775807,
                             "deep_per_file": 3, "neighbours": 4})"},
         }) {
        EXPECT_EQ(json("src " + options)[key], Json::parse(value)) << options;
    }
}

TEST_F(PrintedPage, ListsAPathThatIsNeitherAFileNorAFolderAsMissing) {
    change("INSERT INTO files(path) VALUES('/top.ts'), (x'73'), ('src/a' || char(0))");  // the last two are no paths
    EXPECT_EQ(json("'' caf\xE9 src/a src")["missing"], Json({"", "caf\uFFFD", "src/a"}));
    const Json page = json(". src");
    Lines paths;
    for (const Json& file : page["facts"]["files"]) {
        paths.push_back(file["path"]);
    }
    EXPECT_EQ(paths, (Lines{"/top.ts", "src/a.ts", "src/b.lua", "srclib/c.ts", "test/a.test.ts"}));
}

}  // namespace
}  // namespace host
