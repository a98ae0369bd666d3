// The command as its users run it: what it prints, where, and how it exits.

#include "embedded/index.h"
#include "tests/embedded/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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
    // Runs `wiki-scope ARGUMENTS` in the folder of the test.
    [[nodiscard]] Outcome run(const std::string& arguments) const {
        const std::string line = "cd '" + folder / "" + "' && '" WIKI_SCOPE "' " + arguments + " >'" + folder / "out" +
                                 "' 2>'" + folder / "err" + "'";
        const int status = std::system(line.c_str());  // NOLINT(cert-env33-c): a test of a command
        return {WEXITSTATUS(status), folder.read("out"), folder.read("err")};
    }

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
    Connection(folder / "index2.db", Connection::Mode::CREATE)
        .execute("CREATE TABLE meta(key, value); INSERT INTO meta VALUES('schema_version', '2')");
    folder.write("text.scip", "this is not SCIP");
    folder.write("good.scip", std::string_view("\x0a\x00", 2));
    folder.write("cut.scip", std::string("\x0a\x02\x12\x00\x12\x7f", 6));
    struct Case {
        const char* arguments;
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
             {"page a --index index.db --checkout none", 1, "none: not a folder"},
             {"page a --index index.db --checkout index.db", 1, "index.db: not a folder"},
             {"page src --index index.db --checkout . 2>err >/dev/full #", 1,
              "the page could not be written: No space left"},
             {"import none.scip --index new.db", 1, "none.scip: no such file"},
             {"import text.scip --index new.db", 1, "text.scip: not a SCIP file"},
             {"import empty.db --index new.db", 1, "empty.db: not a SCIP file"},
             {"import cut.scip --index new.db", 1, "cut.scip: a truncated SCIP file"},
             {"import cut.scip --index text.db", 1, "text.db: not a wiki-scope index"},
             {"import good.scip --index none/new.db", 1, "none/new.db"},
             {"", 2, "subcommand"},
             {"page --index index.db --checkout .", 2, "PATH is required"},
             {"page a --checkout .", 2, "--index is required"},
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

TEST_F(Command, HelpsOnStandardOutput) {
    EXPECT_EQ(run("--version").out, "wiki-scope " WIKI_SCOPE_VERSION "\n");
    for (const char* arguments : {"--help", "page --help", "import --help"}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_code, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_NE(outcome.out.find("Usage: "), std::string::npos) << outcome.out;
    }
}

TEST_F(Command, PrintsFoldersFilesAndMissingPaths) {
    make_index();
    const Outcome page = run("page ./src/ none/a.ts src/a.ts none/a.ts --only files --index index.db --checkout .");
    EXPECT_EQ(page.exit_code, 0);
    EXPECT_EQ(page.err, "");
    EXPECT_TRUE(page.out.starts_with("## Files\n\n"));
    EXPECT_TRUE(
        page.out.ends_with("|---|---|---|---|---|---|---|\n"
                           "| `src/a.ts` | 3 | 1 | Says what it is for. | `One` L2 (in-page 7) | src/b.ts |  |\n"
                           "| `src/b.ts` | ? | 0 |  |  |  |  |\n"
                           "| `none/a.ts` | ? | 0 | not in the index | | | |\n"))
        << page.out;
    EXPECT_EQ(run("page none --index index.db --checkout .").exit_code, 0);
}

TEST_F(Command, PrintsTheSameAsJson) {
    make_index();
    const Outcome page = run("page src/a.ts 'caf\xE9' --index index.db --checkout . --format json");
    ASSERT_EQ(page.exit_code, 0) << page.err;
    const auto json = nlohmann::json::parse(page.out);
    EXPECT_EQ(json["facts"]["inbound"][1], (nlohmann::json{{"source_path", "src/b.ts"},
                                                           {"target_id", 1},
                                                           {"target_path", "src/a.ts"},
                                                           {"target_name", "One"},
                                                           {"target_kind", "class"},
                                                           {"resolution", "import"},
                                                           {"refs", 3}}));
    EXPECT_EQ(json["facts"]["files"][0], (nlohmann::json{{"id", 1}, {"path", "src/a.ts"}, {"language", "typescript"}}));
    EXPECT_EQ(json["missing"], nlohmann::json({"caf\uFFFD"}));
    EXPECT_EQ(json["fan_in"],
              (nlohmann::json{{"outside", {{"1", 3}}}, {"inside", {{"1", 4}}}, {"entry", nlohmann::json::array()}}));
    EXPECT_EQ(json["file_users"], (nlohmann::json{{"src/a.ts", {{"src/b.ts", 3}}}}));
}

}  // namespace
}  // namespace embedded
