// Whole pages as `wiki-scope page` prints them.

#include "embedded/index.h"
#include "embedded/markdown_text.h"
#include "embedded/page.h"
#include "tests/embedded/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <vector>

namespace embedded {
namespace {

using Json = nlohmann::ordered_json;  // equal only in the same order
using Lines = std::vector<std::string>;

static_assert(!std::is_copy_constructible_v<Page> && !std::is_move_constructible_v<Page>);

// Two files to make a page of: a class, and a constant that is only matched by its name; two files that use them.
class PrintedPage : public testing::Test {
  protected:
    PrintedPage() {
        const Connection connection(folder / "index.db", Connection::Mode::CREATE);
        create_schema(connection);
        create_indexes(connection);
        fill("INSERT INTO files VALUES(1, 'src/a.ts', 'typescript'), (2, 'src/b.lua', NULL), "
             "(3, 'lib/c.ts', 'typescript'), (4, 'test/a.test.ts', 'typescript');"
             "INSERT INTO languages VALUES('typescript', 1);"
             "INSERT INTO symbols VALUES(1, 1, 'One', 'a.One', 'class', 1, 2, 4), "
             "(2, 1, 'run', 'a.One.run', 'method', 1, 3, 3), (3, 2, 'TICKS', 'b.TICKS', 'constant', 1, 1, 1), "
             "(4, 3, 'a|b', 'c.a|b', 'x|`y', 1, 5, 6);"
             "INSERT INTO edges VALUES(3, 1, 'import', 3), (1, 1, 'local', 4), (4, 1, 'import', 1), "
             "(3, 3, 'unique', 2), (1, 4, 'import', 5);");
        folder.write("src/a.ts", "// Says what it is for.\nclass One {\n  run() {}\n}\n");
        folder.write("src/b.lua", "TICKS = '```'\n");
    }

    void fill(const std::string& sql) const { Connection(folder / "index.db", Connection::Mode::CREATE).execute(sql); }

    // What `wiki-scope page ARGUMENTS` prints, on standard output and standard error; it must succeed.
    [[nodiscard]] std::string print(const std::string& arguments) const {
        const std::string command =
            "cd '" + folder / "" + "' && '" WIKI_SCOPE "' page --index index.db --checkout . " + arguments + " 2>&1";
        FILE* output = popen(command.c_str(), "r");
        std::string printed;
        std::array<char, 4096> piece{};
        while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), output)) {
            printed.append(piece.data(), size);
        }
        EXPECT_EQ(pclose(output), 0) << printed;
        return printed;
    }

    [[nodiscard]] Json json(const std::string& arguments) const {
        return Json::parse(print("--format json " + arguments));
    }

    TemporaryFolder folder;
};

TEST_F(PrintedPage, StatesEverySectionOfTheNamedFilesAndFolders) {
    EXPECT_EQ(print("./src/ none.ts src/a.ts none.ts"), R"(## Files

Every file of this page, from the index. Lines and the summary come from the file; the most used declarations are ranked by the references production code outside the page makes to them (line, references; `in-page` when only the page's own files use them); users are the other production files that reference the file through evidence-backed edges.

| File | Lines | Declarations | Summary | Most used | Used by | Tests |
|---|---|---|---|---|---|---|
| `src/a.ts` | 4 | 2 | Says what it is for. | `One` L2 (3) | lib/c.ts | test/a.test.ts |
| `src/b.lua` | 1 | 1 |  |  |  |  |
| `none.ts` | ? | 0 | not in the index | | | |

## Consumers

The index does not resolve imports for files of unknown language, so the files below reference this page's code by a `unique` name (the only production declaration of that name): likely uses, not proven ones. Attribute and constant names are not counted.
- `lib/c.ts` uses `One` (3 refs)
Not counted: 2 `unique` references from 1 other file that match a name only (an attribute or a call that shares a name with a declaration here).

## Declarations

The declarations of this page that matter most, every file represented: what production code outside the page uses and its entry points first.

### `One`

class, `src/a.ts:L2-L4`, 3 uses outside, 4 inside

```typescript
class One {
  run() {}
}
```

### `TICKS`

constant, `src/b.lua:L1-L1`, 0 uses outside, 0 inside

````
TICKS = '```'
````

### `run`

method, `src/a.ts:L3-L3`, 0 uses outside, 0 inside

```typescript
  run() {}
```

## In depth

The callables and types that deserve a deeper treatment, spread over the files.

- `One`
- `run`

## Dependencies

The declarations of other production files that this page uses most, by the references it makes to them.

| Declaration | Kind | File | References |
|---|---|---|---|
| `a\|b` | x\|\`y | `lib/c.ts:L5-L6` | 5 |

References that only match the name of an attribute or a constant, and prove no use.

| Source | Target | References |
|---|---|---|
| `lib/c.ts` | `src/b.lua` | 2 |

## Seeds

One citable range for each file: its most important declaration, or the whole file when it has none.

- `src/a.ts:L2-L4`
- `src/b.lua:L1-L1`
)");
}

TEST_F(PrintedPage, StatesTheSameAsJson) {
    Json expected = Json::parse(R"({
 "facts": {
  "files": [
   {"id": 1, "path": "src/a.ts", "language": "typescript"},
   {"id": 2, "path": "src/b.lua", "language": null}],
  "symbols": [
   {"id": 1, "path": "src/a.ts", "name": "One", "kind": "class", "is_export": true, "start_line": 2, "end_line": 4, "fqn": "a.One"},
   {"id": 2, "path": "src/a.ts", "name": "run", "kind": "method", "is_export": true, "start_line": 3, "end_line": 3, "fqn": "a.One.run"},
   {"id": 3, "path": "src/b.lua", "name": "TICKS", "kind": "constant", "is_export": true, "start_line": 1, "end_line": 1, "fqn": "b.TICKS"}],
  "inbound": [
   {"source_path": "lib/c.ts", "target_id": 1, "target_path": "src/a.ts", "target_name": "One", "target_kind": "class", "resolution": "import", "refs": 3},
   {"source_path": "lib/c.ts", "target_id": 3, "target_path": "src/b.lua", "target_name": "TICKS", "target_kind": "constant", "resolution": "unique", "refs": 2},
   {"source_path": "src/a.ts", "target_id": 1, "target_path": "src/a.ts", "target_name": "One", "target_kind": "class", "resolution": "local", "refs": 4},
   {"source_path": "test/a.test.ts", "target_id": 1, "target_path": "src/a.ts", "target_name": "One", "target_kind": "class", "resolution": "import", "refs": 1}],
  "outbound": [
   {"source_path": "src/a.ts", "target": {"id": 4, "path": "lib/c.ts", "name": "a|b", "kind": "x|`y", "is_export": true, "start_line": 5, "end_line": 6, "fqn": "c.a|b"}, "resolution": "import", "refs": 5}],
  "import_resolved_paths": ["src/a.ts"],
  "test_sources": ["test/a.test.ts"],
  "line_counts": {"src/a.ts": 4, "src/b.lua": 1},
  "summaries": {"src/a.ts": "Says what it is for.", "src/b.lua": ""},
  "test_imports": {"src/a.ts": ["test/a.test.ts"]}},
 "missing": ["none.ts"],
 "tests_by_file": {"src/a.ts": ["test/a.test.ts"]},
 "fan_in": {"outside": {"1": 3}, "inside": {"1": 4}, "entry": []},
 "file_users": {"src/a.ts": {"lib/c.ts": 3}},
 "ranked": {"src/a.ts": [1, 2], "src/b.lua": [3]},
 "rank_keys": {"1": [false, 0, false, -6, -2, -8, 2], "2": [true, 0, false, 0, 0, 0, 3], "3": [true, 1, false, 0, 0, 0, 1]},
 "seeds": {"src/a.ts": [2, 4], "src/b.lua": [1, 1]},
 "selection": [1, 3, 2],
 "scored": [["One", "src/a.ts"], ["run", "src/a.ts"]],
 "deep": ["One", "run"],
 "neighbours": [{"target": {"id": 4, "path": "lib/c.ts", "name": "a|b", "kind": "x|`y", "is_export": true, "start_line": 5, "end_line": 6, "fqn": "c.a|b"}, "refs": 5}],
 "name_matches": [{"source": "lib/c.ts", "target": "src/b.lua", "refs": 2}],
 "options": {"total": 24, "floor": 2, "max_share": 0.4, "deep": 6, "deep_per_file": 2, "neighbours": 12}})");
    expected["file_cards"] = print("src none.ts --only files");
    expected["consumers"] = print("src none.ts --only consumers");
    EXPECT_EQ(json("src none.ts"), expected);
}

TEST_F(PrintedPage, HasOnlyTheWantedSectionsInTheirOrder) {
    EXPECT_EQ(print("src --only seeds,files"), print("src --only files") + "\n" + print("src --only seeds"));
}

TEST_F(PrintedPage, QuotesTheLinesThatTheCheckoutHasUnlessToldNotTo) {
    fill("UPDATE symbols SET end_line = 99 WHERE id = 1; UPDATE symbols SET start_line = 0 WHERE id = 2;"
         "UPDATE symbols SET kind = 'a' || char(10) || '`b', start_line = 2, end_line = 1 WHERE id = 3;");
    const std::string one = "### `One`\n\nclass, `src/a.ts:L2-L99`, 3 uses outside, 4 inside\n\n";
    const std::string source = "```typescript\nclass One {\n  run() {}\n}\n```\n\n";
    const std::string others = "### `TICKS`\n\na \\`b, `src/b.lua:L2-L2`, 2 uses outside, 0 inside\n\n"
                               "### `run`\n\nmethod, `src/a.ts`, 0 uses outside, 0 inside\n";
    EXPECT_TRUE(print("src --only declarations").ends_with("\n\n" + one + source + others));
    EXPECT_TRUE(print("src --only declarations --no-source").ends_with("\n\n" + one + others));
}

TEST_F(PrintedPage, IsChosenByTheNumbersOfItsOptions) {
    fill("INSERT INTO symbols VALUES(11, 1, 'f', '', 'function', 1, 11, 11), (12, 1, 'g', '', 'function', 1, 12, 12), "
         "(13, 1, 'h', '', 'function', 1, 13, 13), (21, 2, 'C', '', 'constant', 1, 21, 21), "
         "(22, 2, 'D', '', 'constant', 1, 22, 22), (23, 2, 'E', '', 'constant', 1, 23, 23)");
    struct Case {
        const char* options;
        const char* key;
        const char* value;
    };
    for (const auto& [options, key, value] : std::initializer_list<Case>{
             {"", "selection", "[1, 3, 11, 21, 12, 22, 13, 23, 2]"},
             {"--total 6", "selection", "[1, 3, 11, 21, 12, 22]"},
             {"--total 6 --max-share 0.7", "selection", "[1, 3, 11, 21, 12, 13]"},
             {"--total 6 --max-share 0.7 --floor 1", "selection", "[1, 3, 11, 12, 13, 2]"},
             {"", "deep", R"(["One", "f"])"},
             {"--deep 1", "deep", R"(["One"])"},
             {"--deep-per-file 3", "deep", R"(["One", "f", "g"])"},
             {"--neighbours 0", "neighbours", "[]"},
             {"--total 6 --floor 1 --max-share 0.7 --deep 5 --deep-per-file 3 --neighbours 4", "options",
              R"({"total": 6, "floor": 1, "max_share": 0.7, "deep": 5, "deep_per_file": 3, "neighbours": 4})"},
         }) {
        EXPECT_EQ(json(std::string("src ") + options)[key], Json::parse(value)) << options;
    }
}

TEST_F(PrintedPage, ListsAPathThatIsNeitherAFileNorAFolderAsMissing) {
    fill("INSERT INTO files(path) VALUES('/top.ts'), (x'73'), ('src/a' || char(0))");  // the last two are no paths
    EXPECT_EQ(json("'' caf\xE9 src/a")["missing"], Json({"", "caf\uFFFD", "src/a"}));
    const Json page = json(". src");
    Lines paths;
    for (const Json& file : page["facts"]["files"]) {
        paths.push_back(file["path"]);
    }
    EXPECT_EQ(paths, (Lines{"/top.ts", "lib/c.ts", "src/a.ts", "src/b.lua", "test/a.test.ts"}));
}

TEST(MarkdownText, CannotBreakOutOfItsPlace) {
    EXPECT_EQ(plain_text("type_alias"), "type_alias");
    EXPECT_EQ(plain_text("# [a](b)\r\n`<c>|\\"), R"(\# \[a](b)  \`\<c>\|\\)");
    EXPECT_EQ(code_span("a|b\r\nc"), "`a|b  c`");
    EXPECT_EQ(code_span("a``b`c"), "```a``b`c```");
    EXPECT_EQ(code_span("`"), "`` ` ``");
    EXPECT_EQ(code_span(""), "`  `");
    EXPECT_EQ(code_cell("`a|b"), "`` `a\\|b ``");
    EXPECT_EQ(fenced_block(Lines{"a", "``b````c"}, "c++"), "`````c++\na\n``b````c\n`````\n");
    EXPECT_EQ(fenced_block(Lines{}, "two words"), "```\n```\n");
}

}  // namespace
}  // namespace embedded
