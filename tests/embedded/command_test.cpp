// The command as its users run it: what it says, where, and how it exits.

#include "embedded/index.h"
#include "tests/embedded/scip_builder.h"
#include "tests/embedded/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <string>

namespace embedded {
namespace {

struct Outcome {
    int exit_code;
    std::string out;
    std::string err;
};

class Command : public testing::Test {
  protected:
    // Runs a line of shell in the folder of the test.
    [[nodiscard]] Outcome shell(const std::string& line) const {
        const std::string all = "cd '" + folder / "" + "' && exec >out 2>err; " + line;
        const int status = std::system(all.c_str());  // NOLINT(cert-env33-c): a test of a command
        return {WEXITSTATUS(status), folder.read("out"), folder.read("err")};
    }
    [[nodiscard]] Outcome run(const std::string& arguments) const { return shell("'" WIKI_SCOPE "' " + arguments); }

    void make_index() const {
        const Connection connection(folder / "index.db", Connection::Mode::CREATE);
        create_schema(connection);
        create_indexes(connection);
        connection.execute("INSERT INTO files VALUES(1, 'src/a.ts', 'typescript'), (2, 'src/b.ts', NULL), "
                           "(3, 'src-b.ts', NULL);"
                           "INSERT INTO languages VALUES('typescript', 1);"
                           "INSERT INTO symbols VALUES(1, 1, 'One', 'a.One', 'class', 1, 2, 9);"
                           "INSERT INTO edges VALUES(2, 1, 'import', 3), (1, 1, 'local', 4);");
        folder.write("src/a.ts", "// Says what it is for.\nclass One {\n}\n");
    }

    TemporaryFolder folder;
};

TEST_F(Command, ExplainsEveryFailureInOneLine) {
    make_index();
    folder.write("text.db", "this is no database, but text that is long enough to be taken for one");
    folder.write("empty.db", "");
    Connection(folder / "other.db", Connection::Mode::CREATE).execute("CREATE TABLE t(x)");
    Connection(folder / "foreign.db", Connection::Mode::CREATE)
        .execute("CREATE TABLE meta(key, value); INSERT INTO meta VALUES('schema_version', '1')");
    for (const auto& [name, change] :
         {std::pair("half.db", "DROP TABLE languages"), std::pair("index2.db", "UPDATE meta SET value = '2'"),
          std::pair("null.db", "UPDATE meta SET value = NULL"),
          std::pair("wild.db", "UPDATE meta SET value = char(10, 27)")}) {
        folder.write(name, folder.read("index.db"));
        Connection(folder / name, Connection::Mode::CREATE).execute(change);
    }
    folder.write("cut.db", folder.read("index.db").substr(0, 5000));
    const Connection other_program(folder / "locked.db", Connection::Mode::CREATE);
    other_program.execute("BEGIN EXCLUSIVE; CREATE TABLE meta(key, value)");
    std::filesystem::create_symlink("loop", folder / "loop");
    const std::string too_long(300, 'x');
    folder.write("text.scip", "this is not SCIP");
    folder.write("good.scip", std::string_view("\x0a\x00", 2));
    folder.write("cut.scip", std::string("\x0a\x02\x12\x00\x12\x7f", 6));
    struct Case {
        std::string arguments;
        int exit_code;
        const char* says;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"page a --index none.db --checkout .", 1, "none.db: no such index"},
             {"page a --index text.db --checkout .", 1, "text.db: not a wiki-scope index"},
             {"page a --index empty.db --checkout .", 1, "empty.db: not a wiki-scope index"},
             {"page a --index other.db --checkout .", 1, "other.db: not a wiki-scope index"},
             {"page a --index src --checkout .", 1, "src: not a wiki-scope index"},
             {"page a --index index2.db --checkout .", 1, "index2.db: an index of schema version 2"},
             {"page a --index null.db --checkout .", 1, "null.db: not a wiki-scope index"},
             {"page a --index half.db --checkout .", 1, "half.db: no such table: languages; it is not a whole"},
             {"page a --index wild.db --checkout .", 1, "wild.db: an index of schema version \\x0a\\x1b,"},
             {"page a --index cut.db --checkout .", 1, "cut.db: database disk image is malformed; it is not a whole"},
             {"page a --index locked.db --checkout .", 1, "locked.db: database is locked; another program is using it"},
             {"page a --index loop --checkout .", 1, "loop: cannot be found (Too many levels"},
             {"page a --index " + too_long + " --checkout .", 1, "x: cannot be found (File name too long)"},
             {"page a --index 'a\nb' --checkout .", 1, "a\\x0ab: no such index"},
             {"page a --index index.db --checkout none", 1, "none: no such folder"},
             {"page a --index index.db --checkout index.db", 1, "index.db: not a folder"},
             {"page src --index index.db --checkout . >/dev/full", 1,
              "standard output: cannot be written (No space left"},
             {"import good.scip --index good.db >/dev/full", 1, "standard output: cannot be written (No space"},
             {"--help >/dev/full", 1, "standard output: cannot be written (No space left"},
             {"import none.scip --index new.db", 1, "none.scip: no such file"},
             {"import text.scip --index new.db", 1, "text.scip: not a SCIP file"},
             {"import empty.db --index new.db", 1, "empty.db: not a SCIP file"},
             {"import cut.scip --index new.db", 1, "cut.scip: a truncated SCIP file"},
             {"import cut.scip --index text.db", 1, "text.db: not a wiki-scope index"},
             {"import text.scip --index foreign.db", 1, "foreign.db: not a wiki-scope index"},
             {"import text.scip --index ''", 2, "--index: an empty name"},
             {"import good.scip --index none/new.db", 1,
              "none/new.db: cannot be written (No such file or directory); "},
             {"import good.scip --index index.db", 1, "good.scip: names no source file, so index.db is kept"},
             {"import good.scip --index " + too_long, 1, "x: cannot be found (File name too long)"},
             {"", 2, "subcommand"},
             {"frob a", 2, "no such command: frob (see wiki-scope --help)"},
             {"page --index index.db --checkout .", 2, "PATH is required (see wiki-scope page --help)"},
             {"page a --checkout .", 2, "--index is required"},
             {"page a --index index.db --checkout . --total ''", 2, "--total: \"\" is not a number"},
             {"page a --index index.db --checkout . --total 0x10", 2, "--total: \"0x10\" is not a number"},
             {"page a --index index.db --checkout . --deep 9223372036854775808", 2,
              "--deep: \"9223372036854775808\" is"},
             {"page a --index index.db --checkout . --max-share nan", 2, "--max-share: \"nan\" is not a number"},
             {"page a --index index.db --checkout . --max-share 1e999", 2, "--max-share: \"1e999\" is not a number"},
             {"page a --index index.db --checkout . --format xml", 2, "--format: xml not in"},
             {"page a --index index.db --checkout . --unknown", 2, "--unknown"},
         }) {
        const Outcome outcome = run(c.arguments);
        EXPECT_EQ(outcome.exit_code, c.exit_code) << c.arguments;
        EXPECT_NE(outcome.err.find(c.says), std::string::npos) << c.arguments << " said: " << outcome.err;
        EXPECT_TRUE(outcome.err.starts_with("wiki-scope: ")) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(folder.read("text.db").substr(0, 7), "this is");
    EXPECT_FALSE(std::filesystem::exists(folder / "new.db"));
}

TEST_F(Command, TakesNumbersAsDecimal) {
    make_index();
    const Outcome page = run("page src --index index.db --checkout . --format json --total 010 --floor=-5 "
                             "--deep 9223372036854775807 --max-share 1e300");
    EXPECT_EQ(page.err, "");
    EXPECT_NE(page.out.find(R"("total":10)"), std::string::npos) << page.out;
}

TEST_F(Command, TakesPathsThatMeanMoreToSqliteAsTheyStand) {
    folder.write("one.scip", scip::scip_file({scip::ScipDocument("a.ts")}));
    for (const std::string name : {":memory:", "file:a.db?mode=memory"}) {
        EXPECT_EQ(run("import one.scip --index '" + name + "'").err, "");
        EXPECT_EQ(run("page . --index '" + name + "' --checkout .").err, "");
        EXPECT_TRUE(std::filesystem::exists(folder / name));
    }
}

TEST_F(Command, EndsAnImportOnASignalUnlessThatIsIgnored) {
    std::vector<scip::ScipDocument> documents;
    for (int file = 0; file < 3000; ++file) {
        const std::string symbol = "tool npm pkg 1.0 f" + std::to_string(file);
        documents.emplace_back("f" + std::to_string(file) + ".ts");
        for (int line = 0; line < 50; ++line) {
            documents.back().defines(symbol + "_" + std::to_string(line) + "().");
        }
    }
    folder.write("big.scip", scip::scip_file(documents));
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
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / ""), {}), 3);  // big.scip, out, err
    EXPECT_EQ(signalled("INT").exit_code, 0);
}

TEST_F(Command, SuggestsWhatTenMistypedPathsWereMeantToBe) {
    make_index();
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

TEST_F(Command, EndsQuietlyWhenItsReaderHasSeenEnough) {
    make_index();
    const std::string more_than_a_pipe_holds = "WITH RECURSIVE n(i) AS (SELECT 9 UNION ALL SELECT i + 1 FROM n) "
                                               "INSERT INTO symbols SELECT i, 1, '', '', '', 1, 1, 1 FROM n LIMIT 2000";
    Connection(folder / "index.db", Connection::Mode::CREATE).execute(more_than_a_pipe_holds);
    // Services are often started with the signal ignored.
    EXPECT_EQ(
        shell("trap '' PIPE; '" WIKI_SCOPE "' page src --index index.db --checkout . --format json | head -c 1").err,
        "");
}

TEST_F(Command, HelpsOnStandardOutput) {
    EXPECT_EQ(run("--version").out, "wiki-scope " WIKI_SCOPE_VERSION "\n");
    for (const char* arguments : {"--help", "page --help", "import --help"}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_code, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_NE(outcome.out.find("Usage: "), std::string::npos) << outcome.out;
    }
}

}  // namespace
}  // namespace embedded
