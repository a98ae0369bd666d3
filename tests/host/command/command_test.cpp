// The command as its users run it: what it says, where, and how it exits.

#include "fixtures/scip_builder.h"
#include "tests/host/indexed_folder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

namespace host {
namespace {

using scip::F;
using scip::scip_file;
using scip::ScipDocument;

class Command : public IndexedFolder {
  protected:
    Command() {
        add<FileRow>({{1, "src/a.ts"}, {2, "src/b.ts"}, {3, "src-b.ts"}});
        folder.write("text.db", "this is no database, but text that is long enough to be taken for one");
        folder.write("good.scip", scip_file({ScipDocument("a.ts")}));
    }

    void expect_failure(const std::string& arguments, const std::string& says, int exit_code = 1) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_code, exit_code) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_TRUE(outcome.err.starts_with("wiki-scope: " + says)) << arguments << " said: " << outcome.err;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    }

    // A copy of the index, changed by a statement.
    [[nodiscard]] std::string changed_index(const std::string& name, const std::string& change) const {
        folder.write(name, folder.read("index.db"));
        SqliteConnection(folder / name, SqliteConnection::Mode::CREATE).execute(change);
        return name;
    }
};

TEST_F(Command, ExplainsInOneLineWhyAnIndexCannotBeRead) {
    SqliteConnection(folder / "other.db", SqliteConnection::Mode::CREATE).execute("CREATE TABLE t(x)");
    folder.write("cut.db", folder.read("index.db").substr(0, 5000));
    const SqliteConnection other_program(folder / changed_index("locked.db", ""), SqliteConnection::Mode::CREATE);
    other_program.execute("BEGIN EXCLUSIVE");
    std::filesystem::create_symlink("loop", folder / "loop");
    for (const auto& [name, says] : std::vector<std::pair<std::string, std::string>>{
             {"none.db", ": no such index; make one with: wiki-scope import FOLDER --index none.db\n"},
             {"text.db", ": not a wiki-scope index; name another file\n"},
             {"other.db", ": not a wiki-scope index; name another file\n"},
             {"/", ": not a wiki-scope index but a folder or a device; name another file\n"},
             {changed_index("index1.db", "UPDATE meta SET value = '1'"),
              ": an index of schema version 1, but this program reads version 5; import the SCIP file again\n"},
             {changed_index("newer.db", "UPDATE meta SET value = '10'"),
              ": an index of schema version 10, but this program reads version 5; install a newer wiki-scope\n"},
             {changed_index("null.db", "UPDATE meta SET value = NULL"), ": not a wiki-scope index; "},
             {changed_index("half.db", "DROP TABLE languages"),
              ": its tables and indexes are not those that an import makes; it is not a whole wiki-scope index: import "
              "the SCIP file again\n"},
             {changed_index("wild.db", "UPDATE meta SET value = char(10, 27, 127, 155, 8238) || 'é~'"),
              ": an index of schema version \\x0a\\x1b\\x7f\\xc2\\x9b\\xe2\\x80\\xaeé~,"},
             {"cut.db", ": database disk image is malformed; it is not a whole wiki-scope index: import"},
             {"locked.db", ": database is locked; another program is using it"},
             {"loop", ": cannot be found (Too many levels"},
         }) {
        expect_failure("page a --checkout . --index " + name, name + says);
    }
}

TEST_F(Command, ExplainsInOneLineWhyAnImportFails) {
    SqliteConnection(folder / "foreign.db", SqliteConnection::Mode::CREATE)
        .execute("CREATE TABLE meta(key, value); INSERT INTO meta VALUES('schema_version', '1')");
    const SqliteConnection other_program(folder / changed_index("locked.db", ""), SqliteConnection::Mode::CREATE);
    other_program.execute("BEGIN EXCLUSIVE");
    folder.write("empty.scip", scip_file({}));
    expect_failure("import none.scip --index new.db", "none.scip: no such file");
    expect_failure("import /dev/null --index new.db", "/dev/null: not a SCIP file");
    expect_failure("import - --index new.db <&-", "standard input: not a SCIP file");
    expect_failure("import empty.scip --index index.db",
                   "empty.scip: no source file is named there, so index.db is kept");
    expect_failure("import good.scip --index text.db", "text.db: not a wiki-scope index, so it is not replaced");
    expect_failure("import good.scip --index foreign.db", "foreign.db: not a wiki-scope index");
    expect_failure("import good.scip --index locked.db", "locked.db: database is locked");
    expect_failure("import good.scip --index none/new.db",
                   "none/new.db: cannot be written (No such file or directory); create its folder or");
    expect_failure("import good.scip --index new.db --checkout none", "none: no such folder");
    EXPECT_TRUE(folder.read("text.db").starts_with("this is"));
    EXPECT_FALSE(std::filesystem::exists(folder / "new.db"));
}

TEST_F(Command, ExplainsInOneLineWhatIsWrongWithItsFolderOrItsOutput) {
    folder.write("src/a.ts", "");
    std::filesystem::create_symlink("loop", folder / "loop");
    expect_failure("page a --index index.db --checkout none", "none: no such folder");
    expect_failure("page a --index index.db --checkout index.db", "index.db: not a folder");
    expect_failure("page a --index index.db --checkout loop", "loop: cannot be read (Too many levels");
    for (const std::string writes :
         {"page src --index index.db --checkout .", "import good.scip --index good.db", "--help"}) {
        expect_failure(writes + " >/dev/full",
                       "standard output: cannot be written (No space left on device); make room");
        expect_failure(writes + " >&-", "standard output: cannot be written (Bad file descriptor");
    }
}

TEST_F(Command, ExplainsInOneLineWhatIsWrongWithItsArguments) {
    constexpr int WRONG_USAGE = 2;
    expect_failure("", "A subcommand is required (see wiki-scope --help)", WRONG_USAGE);
    expect_failure("frob a", "no such command: frob (see wiki-scope --help)", WRONG_USAGE);
    expect_failure("import good.scip --index ''", "--index: an empty name", WRONG_USAGE);
    expect_failure("stats --index postgresql://host/db --repository ''", "--repository: an empty name", WRONG_USAGE);
    expect_failure("import - good.scip - --index new.db", "SOURCE: - may be given only once", WRONG_USAGE);
    for (const char* const twice : {"import . . good.scip", "import good.scip . --checkout ."}) {
        expect_failure(twice + std::string(" --index new.db"), "SOURCE: only one folder holds the sources",
                       WRONG_USAGE);
    }
    expect_failure("page --index index.db --checkout .", "PATH is required (see wiki-scope page --help)", WRONG_USAGE);
    expect_failure("page a --inde index.db", "The following argument was not expected: --inde (", WRONG_USAGE);
    for (const auto& [option, says] : std::vector<std::pair<std::string, std::string>>{
             {"--total ''", "--total: \"\" is not a valid number"},
             {"--deep=-1", "--deep: \"-1\" is not a valid number"},
             {"--total 0x10", "--total: \"0x10\" is not a valid number"},
             {"--deep 9223372036854775808", "--deep: \"9223372036854775808\" is"},
             {"--no-source --format json", "--no-source: applies to Markdown and HTML only"},
             {"--max-share 1.01", "--max-share: 1.01 is more than 1"},
             {"--max-share nan", "--max-share: \"nan\" is not a valid number"},
             {"--max-share 1e999", "--max-share: \"1e999\" is not a valid number"},
             {"--format xml", "--format: xml not in"},
             {"--only nothing", "--only: no such section: nothing"},
         }) {
        expect_failure("page a --index index.db --checkout . " + option, says, WRONG_USAGE);
    }
}

TEST_F(Command, FindsItsIndexByOptionEnvironmentOrCheckout) {
    const auto failure = [&](const std::string& command) { return shell(command).err; };
    const std::string stats = "wiki-scope stats";
    const std::string missing = ".db: no such index; make one with: wiki-scope import FOLDER --index ";
    EXPECT_EQ(failure("wiki-scope import good.scip"),
              "wiki-scope: --index is required (see wiki-scope import --help)\n");
    folder.write(".wiki-scope.toml", "index = 'named.db'");
    EXPECT_EQ(failure(stats), "wiki-scope: named" + missing + "named.db (.wiki-scope.toml names this index)\n");
    EXPECT_EQ(failure("WIKI_SCOPE_INDEX=set.db " + stats),
              "wiki-scope: set" + missing + "set.db (WIKI_SCOPE_INDEX names this index)\n");
    EXPECT_EQ(failure("WIKI_SCOPE_INDEX=set.db " + stats + " --index given.db"),
              "wiki-scope: given" + missing + "given.db\n");
    EXPECT_EQ(failure("mkdir sub; cd sub; wiki-scope page a --checkout .."),
              "wiki-scope: ../named" + missing + "../named.db (../.wiki-scope.toml names this index)\n");
    EXPECT_EQ(shell("wiki-scope import good.scip && " + stats).exit_code, 0);
    folder.write(".wiki-scope.toml", "index = 'postgresql://me:unsayable@db/wiki'");
    EXPECT_NE(failure(stats).find("/.wiki-scope.toml:1: `index` must be a file below this folder; "),
              std::string::npos);
    EXPECT_EQ(failure(stats).find("unsayable"), std::string::npos);
}

TEST_F(Command, ReadsTheSourcesAroundItWhereNothingNamesAnIndex) {
    const std::string command = "XDG_CACHE_HOME=\"$OLDPWD/cache\" wiki-scope ";
    const auto in_checkout = [&](const std::string& arguments) {
        return shell("cd '" + (folder / "checkout/src") + "'; export OLDPWD; " + command + arguments);
    };
    folder.write("checkout/.git/HEAD", "");
    folder.write("checkout/src/p/store.go", "// Package p keeps items.\npackage p\n\nfunc Keep() {}\n");
    folder.write("checkout/src/main.go", "package main\n\nfunc main() { run() }\n\nfunc run() {}\n");
    EXPECT_NE(in_checkout("page p").out.find("`src/p/store.go`"), std::string::npos);
    EXPECT_EQ(shell("cd checkout/src/p; export OLDPWD; " + command + "files .").out.find("main.go"), std::string::npos);
    EXPECT_NE(in_checkout("find Keep").out.find("src/p/store.go:L4-L4"), std::string::npos);
    EXPECT_NE(in_checkout("files --checkout p").out.find("\nstore.go"), std::string::npos);
    EXPECT_NE(in_checkout("stats").out.find("2 files, 3 declarations, 1 edge"), std::string::npos);
    EXPECT_EQ(in_checkout("stats").out.find(", sources in "), std::string::npos);
    folder.write("checkout/src/p/store.go", "package p\n\nfunc Keep() {}\n\nfunc Drop() {}\n");
    EXPECT_NE(in_checkout("find Drop").out.find("src/p/store.go:L5-L5"), std::string::npos);
    folder.write("none/README.md", "");
    EXPECT_EQ(shell("cd none; export OLDPWD; " + command + "stats").err,
              "wiki-scope: " + std::filesystem::canonical(folder / "none").string() +
                  ": no source file is there; go to a checkout, or name one with --checkout\n");
    EXPECT_EQ(
        shell("cd checkout; env -u HOME -u XDG_CACHE_HOME wiki-scope stats").err,
        "wiki-scope: no place for an index: neither XDG_CACHE_HOME nor HOME is set; set XDG_CACHE_HOME to a folder "
        "of your own, or name an index with --index\n");
}

TEST_F(Command, TakesPathsFromTheCurrentFolderFirstWhereNothingNamesAnIndex) {
    for (const std::string path : {"a.go", "p/a.go", "src/a.go", "src/p/a.go", "src/[a].go", "src/src/b.go"}) {
        folder.write("checkout/" + path, "package p // " + path + "\n");
    }
    folder.write("checkout/.git/HEAD", "");
    folder.write("outside/a.go", "package p\n");
    std::filesystem::create_directory_symlink(folder / "checkout/src", folder / "link");
    const std::string all = "a.go p/a.go src/[a].go src/a.go src/p/a.go src/src/b.go";
    const std::string below = "src/[a].go src/a.go src/p/a.go src/src/b.go";
    for (const auto& [from, path, expected] : std::vector<std::array<std::string, 3>>{
             {"checkout", ".", all},
             {"checkout", "src", below},
             {"checkout/src", ".", below},
             {"checkout/src", "./", below},
             {"checkout/src", "..", all},
             {"checkout/src", "a.go", "src/a.go"},
             {"checkout/src", "p p/a.go", "src/p/a.go"},
             {"checkout/src", "../p", "p/a.go"},
             {"checkout/src", "src", "src/src/b.go"},
             {"checkout/src/p", "src/a.go", "src/a.go"},
             {"checkout/src/p", "../../src/p/../a.go", "src/a.go"},
             {"checkout/src", "'[a].go'", "src/[a].go"},
             {"checkout/src", "\"$PWD/p\"", "src/p/a.go"},
             {"link", "a.go", "src/a.go"},
             {"link", "\"$PWD/p\"", "src/p/a.go"},
             {"checkout/src", "../../outside/a.go", ""},
             {"checkout/src", "b.go", ""},
             {"checkout/src", "--checkout .. a.go", "a.go"},
             {"outside", "--checkout ../checkout/src p", "p/a.go"},
         }) {
        const std::string page =
            shell("export XDG_CACHE_HOME=\"$PWD/cache\"; cd " + from + "; wiki-scope page --only files " + path).out;
        std::string files;
        for (std::size_t at = page.find("| `"); at != std::string::npos; at = page.find("\n| `", at)) {
            at = page.find('`', at) + 1;
            files += (files.empty() ? "" : " ") + page.substr(at, page.find('`', at) - at);
        }
        EXPECT_EQ(files, expected) << path << " from " << from << ":\n" << page;
    }
}

TEST_F(Command, ReportsWhatAnImportWroteAndSkipped) {
    const std::string whole = scip_file(
        {ScipDocument("ok..ts").defines(F).refers(F).defines("no symbol").refers("no symbol").describes("nor this"),
         ScipDocument("").defines(F), ScipDocument("/a.ts").defines(F), ScipDocument("../a.ts"), ScipDocument("a/.."),
         ScipDocument(std::string_view("a\0b", 3))});
    const std::string external_symbol("\x1A\x02\x0A\x00", 4);
    folder.write("in.scip", std::string(whole).insert(scip_file({}).size(), external_symbol));
    EXPECT_EQ(run("import in.scip --index new.db").out,
              "new.db: 1 file, 1 declaration, 1 edge, without sources; indexed by indexer 1.2\n"
              "Skipped: 2 symbols that cannot be parsed or printed, 5 documents without a usable path\n"
              "No source could be read: ok..ts; name the indexed folder with --checkout\n");
}

TEST_F(Command, ReadsAnImportThatComesThroughAPipe) {
    const std::string whole = run("import good.scip --index whole.db").out;
    ASSERT_TRUE(whole.starts_with("whole.db: 1 file,"));
    for (const std::string source : {"cat good.scip | IMPORT -", "(sleep 0.2; cat good.scip) | IMPORT -",
                                     "IMPORT - <good.scip", "mkfifo p; (sleep 0.2; cat good.scip >p) & IMPORT p"}) {
        std::string command = source;
        command.replace(command.find("IMPORT"), 6, "wiki-scope import --index whole.db");
        EXPECT_EQ(shell(command).out, whole) << source;
    }
}

TEST_F(Command, RunsWithoutStandardInput) {
    EXPECT_EQ(run("import good.scip --index new.db <&-").exit_code, 0);
    EXPECT_EQ(run("page src --index index.db --checkout . <&-").out, run("page src --index index.db --checkout .").out);
}

TEST_F(Command, TakesPathsThatAreSpecialToSqliteLiterally) {
    folder.write("one.scip", scip_file({ScipDocument("a.ts")}));
    for (const std::string name : {":memory:", "file:a.db?mode=memory"}) {
        EXPECT_EQ(run("import one.scip --index '" + name + "'").err, "");
        EXPECT_EQ(run("page a.ts --index '" + name + "' --checkout . --only seeds").exit_code, 0);
        EXPECT_TRUE(std::filesystem::exists(folder / name));
    }
}

TEST_F(Command, EndsAnImportOnASignalUnlessThatIsIgnored) {
    ScipDocument large("a.ts");
    for (int id = 0; id < 100'000; ++id) {
        large.defines(scip::symbol("f" + std::to_string(id) + "()."));
    }
    folder.write("big.scip", scip_file({large, large}));
    const auto files = std::distance(std::filesystem::directory_iterator(folder / ""), {}) + 2;  // out and err
    // In the background of a script SIGINT is ignored, SIGTERM is not.
    const auto signalled = [&](const std::string& signal) {
        return shell("wiki-scope import big.scip --index new.db & "
                     "for tick in $(seq 1000); do [ -e .new.db.wiki-scope-partial ] && break; sleep 0.01; done; "
                     "kill -" +
                     signal + " $!; wait $!");
    };
    const Outcome ended = signalled("TERM");
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_EQ(ended.err, "wiki-scope: interrupted; nothing was changed at new.db\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / ""), {}), files);
    EXPECT_EQ(signalled("INT").exit_code, 0);
}

TEST_F(Command, FailsWhenNoPathIsFoundOrARequiredOneIsMissing) {
    const std::string options = " --index index.db --checkout . --only seeds";
    const Outcome none = run("page scr nothing" + options);
    EXPECT_EQ(none.exit_code, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err,
              "wiki-scope: scr: not in the index; did you mean src?\nwiki-scope: nothing: not in the index\n");
    expect_failure("page src nothing --strict" + options, "nothing: not in the index\n");
    EXPECT_EQ(run("page src nothing" + options).exit_code, 0);
    EXPECT_EQ(run("page src --strict" + options).exit_code, 0);
}

TEST_F(Command, AcceptsPathsOfTheMachine) {
    std::filesystem::create_directories(folder / "src/deep");
    std::filesystem::create_directory_symlink(folder / "src", folder / "link");
    const auto cards = [&](const std::string& path, const std::string& from) {
        return shell("cd " + from + " && wiki-scope page --index '" + folder / "index.db" + "' --checkout '" +
                     folder / "" + "' --only files " + path)
            .out;
    };
    const std::string card = cards("src/a.ts", ".");
    ASSERT_NE(card.find("`src/a.ts"), std::string::npos) << card;
    for (const auto& [path, from] : std::vector<std::pair<std::string, std::string>>{
             {"a.ts", "src"}, {"../a.ts", "src/deep"}, {"'" + folder / "src/a.ts" + "'", "/"}, {"a.ts", "link"}}) {
        EXPECT_EQ(cards(path, from), card) << path << " from " << from;
    }
    EXPECT_EQ(cards("..", "src"), cards(".", "src"));
    for (const char* const pattern : {"'src/?.ts'", "'**/src/*'", "'./src/**/{a,b}.ts'"}) {
        EXPECT_EQ(cards(pattern, "."), cards("src/a.ts src/b.ts", ".")) << pattern;
    }
    EXPECT_EQ(cards("'[ab].ts'", "src"), cards("src/a.ts src/b.ts", "."));
    EXPECT_EQ(cards("../src-b.ts", "src"), cards("src-b.ts", "src"));
    EXPECT_EQ(cards("/src/a.ts", "."), "");
}

TEST_F(Command, ReadsSourcesFromTheFolderThatWasImported) {
    folder.write("checkout/a.ts", "export function f() {}\n");
    ASSERT_EQ(run("import good.scip --index new.db --checkout checkout").exit_code, 0);
    EXPECT_EQ(run("page a.ts --index new.db").out, run("page a.ts --index new.db --checkout checkout").out);
    std::filesystem::remove_all(folder / "checkout");
    expect_failure("page a.ts --index new.db", "new.db: made in " + folder / "checkout" + ", which is gone; name");
    expect_failure("page src --index index.db", "index.db: made without sources; name the folder");
}

TEST_F(Command, AppliesTestRulesOfOptionsAndOfTheIndex) {
    folder.write("in.scip", scip_file({ScipDocument("a.ts").defines(F), ScipDocument("check/b.ts").refers(F),
                                       ScipDocument("test/c.ts").refers(F)}));
    folder.write("src/.wiki-scope.toml", "not-test = ['test/c.ts']");
    ASSERT_EQ(run("import in.scip --index new.db --checkout src --test check").exit_code, 0);
    const auto card = [&](const std::string& options) {
        const std::string page = run("page a.ts --index new.db --only files " + options).out;
        return page.substr(page.find("| `a.ts`"));
    };
    EXPECT_EQ(card(""), "| `a.ts` | ? | 1 |  | `f` L1 (1) | test/c.ts | check/b.ts |\n");
    EXPECT_EQ(card("--not-test '**/b.ts' --test test"),
              "| `a.ts` | ? | 1 |  | `f` L1 (1) | check/b.ts | test/c.ts |\n");
    expect_failure("page a.ts --index new.db --test ''", "--test: an empty pattern", 2);
    folder.write("src/.wiki-scope.toml", "tests = []");
    expect_failure("import in.scip --index new.db --checkout src",
                   folder / "src/.wiki-scope.toml:1: unknown key `tests`");
}

TEST_F(Command, SuggestsCorrectionsForTenMistypedPaths) {
    folder.write("src/a.ts", "");
    const std::string options = " --index index.db --checkout . --only files";
    const Outcome page = run("page scr ./src/B.ts nothing 'src/\na.ts' src/a.ts" + options);
    EXPECT_EQ(page.exit_code, 0);
    EXPECT_EQ(page.err, "wiki-scope: scr: not in the index; did you mean src?\n"
                        "wiki-scope: ./src/B.ts: not in the index; did you mean src/b.ts?\n"
                        "wiki-scope: src/\\x0aa.ts: not in the index; did you mean src/a.ts?\n");
    EXPECT_NE(page.out.find("| `nothing` | ? | 0 | not in the index | | | |\n"), std::string::npos) << page.out;
    const std::string said =
        run("page src 0/src 1/src 2/src 3/src 4/src 5/src 6/src 7/src 8/src 9/src 10/src" + options).err;
    EXPECT_TRUE(said.ends_with("9/src: not in the index; did you mean src?\n")) << said;
}

TEST_F(Command, ReportsWhatMakesAPageLessCertain) {
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
    change("INSERT INTO meta(key, value) VALUES('damaged', 'b.ts' || char(10) || 'src/a.ts' || char(10))");
    folder.write("src/a.ts", "");
    EXPECT_EQ(say("src/a.ts", "."),
              "wiki-scope: src/a.ts: a part of it does not parse; lines and signatures there are the indexer's\n");
    std::filesystem::create_directories(folder / "linked/src");
    std::filesystem::create_symlink(folder / "src/a.ts", folder / "linked/src/a.ts");
    EXPECT_EQ(say("src", "linked"),
              "wiki-scope: src/a.ts: behind a link that leads out of the checkout, so it is not read\n");
    std::filesystem::create_directory(folder / "empty");
    EXPECT_EQ(say("src", "empty"),
              "wiki-scope: empty: holds none of the page's files; name the folder that was indexed with --checkout\n");
    const std::string all = say(".", "empty");
    EXPECT_TRUE(all.ends_with("the page consists of every file of the index: nothing is outside of it, so no use from "
                              "outside is known\n"))
        << all;
    EXPECT_EQ(say("src [0-9].ts", "empty"),
              "wiki-scope: empty: holds none of the page's files; name the folder that was indexed with --checkout\n");
}

TEST_F(Command, PrintsAPageCompletelyOrNotAtAll) {
    add<DeclarationRow>({{1, 1, "One", "a.One", "class", true, 1, 1}});
    // What a page asks for last, after it has found something to remark on.
    change("PRAGMA writable_schema = ON; UPDATE sqlite_schema SET rootpage = "
           "(SELECT rootpage FROM sqlite_schema WHERE name = 'edges') WHERE name = 'descriptions'");
    for (const std::string format : {"json", "markdown"}) {
        const Outcome page = shell("wiki-scope page . --index index.db --checkout . --format " + format);
        EXPECT_EQ(page.exit_code, 1);
        EXPECT_EQ(page.out, "");
        EXPECT_EQ(page.err, "wiki-scope: index.db: database disk image is malformed; it is not a whole wiki-scope "
                            "index: import the SCIP file again\n");
    }
}

TEST_F(Command, CompletesCommandsOptionsAndFilesInBash) {
    folder.write("of two words.scip", "");
    for (const auto& [words, reply] : std::vector<std::pair<std::string, std::string>>{
             {"s", "stats\nserve\n"},
             {"page --max", "--max-bytes\n--max-tokens\n--max-share\n"},
             {"page --format m", "markdown\n"},
             {"find --format = j", "json\n"},
             {"import --checkout s", "src\n"},
             {"import of", "of two words.scip\n"},
             {"page a --total 1", ""},
             {"find i", ""},
         }) {
        const std::string line = "COMP_WORDS=(wiki-scope " + words + "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); ";
        EXPECT_EQ(shell("mkdir -p src; wiki-scope completion bash >completion; bash -c '. ./completion; " + line +
                        R"(_wiki_scope; [ -z "$COMPREPLY" ] || printf "%s\n" "${COMPREPLY[@]}"')")
                      .out,
                  reply)
            << words;
    }
}

TEST_F(Command, EndsQuietlyWhenItsReaderClosesThePipe) {
    folder.write("src/a.ts", "");
    // More than a pipe holds.
    change("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
           "INSERT INTO symbols SELECT i, 1, '', '', '', 1, 1, 1, 0 FROM n LIMIT 2000");
    // Services are often started with the signal ignored.
    const std::string page = "wiki-scope page src --index index.db --checkout . --format json";
    EXPECT_EQ(shell("trap '' PIPE; " + page + " | head -c 1").err, "");
}

}  // namespace
}  // namespace host
