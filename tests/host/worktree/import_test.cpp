// What becomes of a folder of sources in an index that nothing else is known for.

#include "host/worktree/import.h"

#include "fixtures/temporary_folder.h"
#include "host/indexing/report_text.h"
#include "host/sqlite/schema.h"
#include "host/sqlite/sqlite_index.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace host::worktree {
namespace {

class SourcesImport : public testing::Test {
  protected:
    SourcesImport() {
        folder.write("checkout/src/p/Store.java",
                     "package p;\n/** Keeps items. */\npublic class Store {\n    int size;\n    public Store() {}\n"
                     "    public void add(int a) { size++; }\n}\n");
        folder.write(
            "checkout/src/q/Shop.java",
            "package q;\nimport p.Store;\nimport java.util.List;\nclass Shop {\n    Store store = new Store();\n"
            "    void buy(List<String> all) { store.add(1); }\n}\n");
        folder.write("checkout/go.mod", "module example.org/m\n");
        folder.write("checkout/cmd/run.go", "package cmd\n\nfunc Run() {}\n");
        folder.write("checkout/README.md", "# Read me\n");
    }

    indexing::ImportReport import(const ImportRequest& request) const {
        return import_sources(request, *SqliteIndex(folder / "index.db").replace(), {});
    }
    indexing::ImportReport import() const { return import({.folder = folder / "checkout"}); }

    [[nodiscard]] std::string rows(const std::string& query) const {
        const SqliteConnection connection = open_index(folder / "index.db");
        Statement statement(connection, "SELECT group_concat(row, '; ') FROM (" + query + ")");
        statement.step();
        return std::string(statement.text(0));
    }
    [[nodiscard]] std::string edges() const {
        return rows(
            "SELECT path || ' ' || symbols.name || ' ' || kind || ' ' || resolutions.name || ' ' || refs || ' L' || first_line AS row "
            "FROM edges JOIN files ON files.id = source_file_id JOIN symbols ON symbols.id = target_id "
            "JOIN resolutions ON resolutions.id = resolution_id ORDER BY source_file_id, target_id");
    }

    TemporaryFolder folder;
};

TEST_F(SourcesImport, HoldsDeclarationsAndWhatBindingsLeadTo) {
    const indexing::ImportReport report = import();
    EXPECT_EQ(rows("SELECT path || ' ' || language AS row FROM files ORDER BY id"),
              "cmd/run.go go; src/p/Store.java java; src/q/Shop.java java");
    EXPECT_EQ(rows("SELECT fqn || ' ' || kind || ' ' || start_line || '-' || end_line || iif(is_export, ' public', '') "
                   "AS row FROM symbols ORDER BY id"),
              "example.org/m/cmd.Run function 3-3 public; p.Store class 3-7 public; p.Store.size attribute 4-4; "
              "p.Store.Store constructor 5-5; p.Store.add method 6-6; q.Shop class 4-7; q.Shop.store attribute 5-5; "
              "q.Shop.buy method 6-6");
    EXPECT_EQ(edges(), "src/p/Store.java size attribute local 1 L6; src/q/Shop.java Store class import 3 L2; "
                       "src/q/Shop.java add method import 1 L6; src/q/Shop.java store attribute local 1 L6");
    EXPECT_EQ(rows("SELECT documentation AS row FROM descriptions WHERE documentation <> ''"), "Keeps items.");
    EXPECT_EQ(rows("SELECT name || import_resolved AS row FROM languages ORDER BY name"), "go1; java1");
    EXPECT_EQ(report.sources, 3);
    std::ostringstream words;
    write_findings(words, report);
    EXPECT_EQ(words.str(), "Names that lead to no declaration here, by language: java 1\n");  // String
}

TEST_F(SourcesImport, AFunctionThatItsNamePutsInAClassIsAMethodOfIt) {
    folder.write("checkout/a.cc", "class A { int f(); };\nint A::f() { return 1; }\n");
    import();
    EXPECT_EQ(rows("SELECT name || ' ' || kind AS row FROM symbols WHERE file_id = (SELECT id FROM files WHERE path = "
                   "'a.cc') AND start_line = 2"),
              "f method");
}

TEST_F(SourcesImport, BranchesOfWhichABuildTakesOneAreOneDeclaration) {
    folder.write("checkout/a.h", "#if A\n#define M(a) a\n#else\n#define M(b) b\n#endif\n");
    folder.write("checkout/b.c", "#include \"a.h\"\nint b = M(1);\n");
    import();
    EXPECT_EQ(rows("SELECT name || ' ' || start_line || '-' || end_line || ' ' || uses || ' ' || signature AS row FROM "
                   "symbols LEFT JOIN descriptions ON symbol_id = symbols.id WHERE name = 'M'"),
              "M 2-4 1 #define M(a) a\n#define M(b) b");
    EXPECT_NE(edges().find("b.c M function import 1"), std::string::npos);
}

TEST_F(SourcesImport, LeavesOutWhatRulesAndConfigurationSay) {
    folder.write("checkout/.wiki-scope.toml", "exclude = [\"cmd/\"]\ntest = [\"src/q/\"]\n");
    EXPECT_EQ(import().excluded.first, std::vector<std::string>{"cmd/run.go"});
    EXPECT_EQ(rows("SELECT name || uses AS row FROM symbols WHERE kind = 'class' ORDER BY id"), "Store0; Shop0");
    import({.folder = folder / "checkout", .exclusions = rules_of({"src/q"}, {"cmd"})});
    EXPECT_EQ(rows("SELECT path AS row FROM files ORDER BY id"), "cmd/run.go; src/p/Store.java");
}

TEST_F(SourcesImport, NotesTheCommitThatIsCheckedOut) {
    const auto noted = [&](const std::string& head) {
        folder.write("checkout/.git/HEAD", head + "\n");
        import();
        return rows("SELECT value AS row FROM meta WHERE key = 'commit'");
    };
    const std::string hash(40, 'a');
    EXPECT_EQ(noted(hash), hash);
    EXPECT_EQ(noted("ref: refs/heads/main"), "") << "which has no commit yet";
    folder.write("checkout/.git/packed-refs", hash + " refs/heads/main\n");
    EXPECT_EQ(noted("ref: refs/heads/main"), hash);
    EXPECT_EQ(noted("[x](y)" + hash.substr(6)), "");
}

TEST_F(SourcesImport, KeepsTheOldIndexWhereNoSourceIs) {
    import();
    folder.write("empty/README.md", "# Nothing\n");
    EXPECT_THROW(import({.folder = folder / "empty"}), std::runtime_error);
    EXPECT_EQ(rows("SELECT count(*) AS row FROM files"), "3");
}

TEST_F(SourcesImport, SaysWhatCouldNotBeRead) {
    folder.write("checkout/src/p/Bad.java", "class Bad { \xFF }");
    folder.write("checkout/src/p/Torn.java", "class Torn { int a; ) }");
    const indexing::ImportReport report = import();
    EXPECT_EQ(report.unparsed.first, std::vector<std::string>{"src/p/Bad.java"});
    EXPECT_EQ(report.damaged.first, std::vector<std::string>{"src/p/Torn.java"});
    std::ostringstream words;
    write_findings(words, report);
    EXPECT_NE(words.str().find("src/p/Torn.java; what stands in the other parts is missing\n"), std::string::npos);
}

}  // namespace
}  // namespace host::worktree
