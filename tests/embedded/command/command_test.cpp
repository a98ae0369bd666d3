// The command as its users run it: what it says, where, and how it exits.

#include "tests/embedded/indexed_folder.h"
#include "tests/embedded/scip/scip_builder.h"

#include <algorithm>
#include <tuple>

namespace embedded {
namespace {

using scip::F;
using scip::scip_file;
using scip::ScipDocument;

class Command : public IndexedFolder {
  protected:
    Command() { add<FileRow>({{1, "src/a.ts"}, {2, "src/b.ts"}, {3, "src-b.ts"}}); }
};

TEST_F(Command, ExplainsEveryFailureInOneLine) {
    folder.write("src/a.ts", "");
    folder.write("text.db", "this is no database, but text that is long enough to be taken for one");
    Connection(folder / "other.db", Connection::Mode::CREATE).execute("CREATE TABLE t(x)");
    Connection(folder / "foreign.db", Connection::Mode::CREATE)
        .execute("CREATE TABLE meta(key, value); INSERT INTO meta VALUES('schema_version', '1')");
    for (const auto& [name, change] :
         {std::pair("half.db", "DROP TABLE languages"), std::pair("index1.db", "UPDATE meta SET value = '1'"),
          std::pair("null.db", "UPDATE meta SET value = NULL"),
          std::pair("wild.db", "UPDATE meta SET value = char(10, 27)")}) {
        folder.write(name, folder.read("index.db"));
        Connection(folder / name, Connection::Mode::CREATE).execute(change);
    }
    folder.write("cut.db", folder.read("index.db").substr(0, 5000));
    folder.write("locked.db", folder.read("index.db"));
    const Connection other_program(folder / "locked.db", Connection::Mode::CREATE);
    other_program.execute("BEGIN EXCLUSIVE");
    std::filesystem::create_symlink("loop", folder / "loop");
    folder.write("good.scip", scip_file({ScipDocument("a.ts")}));
    folder.write("empty.scip", scip_file({}));
    const std::vector<std::tuple<std::string, int, std::string>> cases{
        {"page a --index none.db --checkout .", 1, "none.db: no such index"},
        {"page a --index text.db --checkout .", 1, "text.db: not a wiki-scope index"},
        {"page a --index other.db --checkout .", 1, "other.db: not a wiki-scope index"},
        {"page a --index src --checkout .", 1, "src: not a wiki-scope index"},
        {"page a --index index1.db --checkout .", 1,
         "index1.db: an index of schema version 1, but this program reads version 3; import"},
        {"page a --index null.db --checkout .", 1, "null.db: not a wiki-scope index"},
        {"page a --index half.db --checkout .", 1, "half.db: no such table: languages; it is not a whole"},
        {"page a --index wild.db --checkout .", 1, "wild.db: an index of schema version \\x0a\\x1b,"},
        {"page a --index cut.db --checkout .", 1, "cut.db: database disk image is malformed; it is not a whole"},
        {"page a --index locked.db --checkout .", 1, "locked.db: database is locked; another program is using it"},
        {"page a --index loop --checkout .", 1, "loop: cannot be found (Too many levels"},
        {"page a --index index.db --checkout none", 1, "none: no such folder"},
        {"page a --index index.db --checkout index.db", 1, "index.db: not a folder"},
        {"page a --index index.db --checkout loop", 1, "loop: cannot be read (Too many levels"},
        {"page src --index index.db --checkout . >/dev/full", 1, "standard output: cannot be written (No space left"},
        {"import good.scip --index good.db >/dev/full", 1, "standard output: cannot be written (No space left"},
        {"--help >/dev/full", 1, "standard output: cannot be written (No space left"},
        {"import none.scip --index new.db", 1, "none.scip: no such file"},
        {"import src --index new.db", 1, "src: not a regular file"},
        {"import good.scip --index text.db", 1, "text.db: not a wiki-scope index"},
        {"import good.scip --index foreign.db", 1, "foreign.db: not a wiki-scope index"},
        {"import good.scip --index locked.db", 1, "locked.db: database is locked"},
        {"import good.scip --index none/new.db", 1, "none/new.db: cannot be written (No such file or directory); "},
        {"import empty.scip --index index.db", 1, "empty.scip: names no source file, so index.db is kept"},
        {"import good.scip --index new.db --checkout none", 1, "none: no such folder"},
        {"import good.scip --index ''", 2, "--index: an empty name"},
        {"", 2, "A subcommand is required (see wiki-scope --help)"},
        {"frob a", 2, "no such command: frob (see wiki-scope --help)"},
        {"page --index index.db --checkout .", 2, "PATH is required (see wiki-scope page --help)"},
        {"page a --index index.db --checkout . --total ''", 2, "--total: \"\" is not a number"},
        {"page a --index index.db --checkout . --total 0x10", 2, "--total: \"0x10\" is not a number"},
        {"page a --index index.db --checkout . --deep 9223372036854775808", 2, "--deep: \"9223372036854775808\" is"},
        {"page a --index index.db --checkout . --max-share nan", 2, "--max-share: \"nan\" is not a number"},
        {"page a --index index.db --checkout . --max-share 1e999", 2, "--max-share: \"1e999\" is not a number"},
        {"page a --index index.db --checkout . --format xml", 2, "--format: xml not in"},
        {"page a --index index.db --checkout . --only nothing", 2, "--only: no such section: nothing"},
    };
    for (const auto& [arguments, exit_code, says] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_code, exit_code) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_TRUE(outcome.err.starts_with("wiki-scope: " + says)) << arguments << " said: " << outcome.err;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    }
    EXPECT_TRUE(folder.read("text.db").starts_with("this is"));
    EXPECT_FALSE(std::filesystem::exists(folder / "new.db"));
}

TEST_F(Command, SaysWhatAnImportHasMadeAndPassedOver) {
    const std::string whole = scip_file(
        {ScipDocument("ok..ts").defines(F).refers(F).defines("no symbol").refers("no symbol").describes("nor this"),
         ScipDocument("").defines(F), ScipDocument("/a.ts").defines(F), ScipDocument("../a.ts"), ScipDocument("a/.."),
         ScipDocument(std::string_view("a\0b", 3))});
    const std::string external_symbol("\x1A\x02\x0A\x00", 4);
    folder.write("in.scip", std::string(whole).insert(scip_file({}).size(), external_symbol));
    EXPECT_EQ(run("import in.scip --index new.db").out,
              "new.db: 1 file, 1 declaration, 1 edge, without sources; indexed by indexer 1.2\n"
              "Passed over: 2 symbols that cannot be read, 5 documents without a usable path\n"
              "No source could be read: ok..ts; name the folder that was indexed with --checkout\n");
}

TEST_F(Command, TakesPathsThatMeanMoreToSqliteAsTheyStand) {
    folder.write("one.scip", scip_file({ScipDocument("a.ts")}));
    for (const std::string name : {":memory:", "file:a.db?mode=memory"}) {
        EXPECT_EQ(run("import one.scip --index '" + name + "'").err, "");
        EXPECT_EQ(run("page none --index '" + name + "' --checkout .").err, "");
        EXPECT_TRUE(std::filesystem::exists(folder / name));
    }
}

TEST_F(Command, EndsAnImportOnASignalUnlessThatIsIgnored) {
    ScipDocument large("a.ts");
    for (int id = 0; id < 100'000; ++id) {
        large.defines(scip::symbol("f" + std::to_string(id) + "()."));
    }
    folder.write("big.scip", scip_file({large, large}));
    // In the background of a script SIGINT is ignored, SIGTERM is not.
    const auto signalled = [&](const std::string& signal) {
        return shell("'" WIKI_SCOPE "' import big.scip --index new.db & "
                     "for tick in $(seq 1000); do [ -e .new.db.wiki-scope-partial ] && break; sleep 0.01; done; "
                     "kill -" +
                     signal + " $!; wait $!");
    };
    const Outcome ended = signalled("TERM");
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_EQ(ended.err, "wiki-scope: interrupted; nothing was changed at new.db\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / ""), {}), 4);  // index.db, big.scip, out, err
    EXPECT_EQ(signalled("INT").exit_code, 0);
}

TEST_F(Command, SuggestsWhatTenMistypedPathsWereMeantToBe) {
    const std::string options = " --index index.db --checkout . --only files";
    const Outcome page = run("page scr ./src/B.ts nothing 'src/\na.ts'" + options);
    EXPECT_EQ(page.exit_code, 0);
    EXPECT_EQ(page.err, "wiki-scope: scr: not in the index; did you mean src?\n"
                        "wiki-scope: ./src/B.ts: not in the index; did you mean src/b.ts?\n"
                        "wiki-scope: src/\\x0aa.ts: not in the index; did you mean src/a.ts?\n");
    EXPECT_NE(page.out.find("| `nothing` | ? | 0 | not in the index | | | |\n"), std::string::npos) << page.out;
    const std::string said =
        run("page 0/src 1/src 2/src 3/src 4/src 5/src 6/src 7/src 8/src 9/src 10/src" + options).err;
    EXPECT_TRUE(said.ends_with("9/src: not in the index; did you mean src?\n")) << said;
}

TEST_F(Command, SaysWhatAPageLeavesInDoubt) {
    for (int number = 0; number < 7; ++number) {
        const std::string path = std::to_string(number) + ".ts";
        folder.write(path, "changed");
        add<FileRow>({{10 + number, path, "", number}});
    }
    const std::string changed = ": changed since it was indexed; its lines may be off; index again\n";
    const auto say = [&](const std::string& paths, const std::string& checkout) {
        return run("page " + paths + " --index index.db --only seeds --checkout " + checkout).err;
    };
    EXPECT_EQ(say("6.ts 0.ts src/a.ts", "."), "wiki-scope: 6.ts" + changed + "wiki-scope: 0.ts" + changed);
    EXPECT_EQ(say("[0-9].ts", "."), "wiki-scope: 0.ts" + changed + "wiki-scope: 1.ts" + changed + "wiki-scope: 2.ts" +
                                        changed + "wiki-scope: 3.ts" + changed + "wiki-scope: 4.ts" + changed +
                                        "wiki-scope: ... and 2 more files changed since indexed; index again\n");
    std::filesystem::create_directory(folder / "empty");
    EXPECT_EQ(say("none", "empty"), "");
    EXPECT_EQ(say("src", "empty"),
              "wiki-scope: empty: holds none of the page's files; name the folder that was indexed with --checkout\n");
    const std::string all = say(".", "empty");
    EXPECT_TRUE(all.ends_with("the page consists of every file of the index: nothing is outside of it, so no use from "
                              "outside is known\n"))
        << all;
    EXPECT_EQ(say("src [0-9].ts", "empty"),
              "wiki-scope: empty: holds none of the page's files; name the folder that was indexed with --checkout\n");
}

TEST_F(Command, EndsQuietlyWhenItsReaderHasSeenEnough) {
    folder.write("src/a.ts", "");
    // More than a pipe holds.
    change("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
           "INSERT INTO symbols SELECT i, 1, '', '', '', 1, 1, 1 FROM n LIMIT 2000");
    // Services are often started with the signal ignored.
    const std::string page = "'" WIKI_SCOPE "' page src --index index.db --checkout . --format json";
    EXPECT_EQ(shell("trap '' PIPE; " + page + " | head -c 1").err, "");
}

}  // namespace
}  // namespace embedded
