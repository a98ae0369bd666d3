// What `wiki-scope files`, `find` and `stats` tell of an index.

#include "fixtures/scip_builder.h"
#include "host/indexing/report_json.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

namespace host {
namespace {

using nlohmann::json;

class Lookup : public IndexedFolder {
  protected:
    Lookup() {
        add<FileRow>({{.id = 1, .path = "src/a.ts", .language = "typescript", .declarations = 12, .declared_lines = 7},
                      {.id = 2, .path = "src/é.test.ts", .language = "typescript"},
                      {.id = 3, .path = "src/\u2028.ts"}});
    }

    // A function of the first file for each name, its uses and its whole name.
    void declare(const std::vector<std::tuple<std::string, std::int64_t, std::string>>& functions) const {
        RowId id = 0;
        for (const auto& [name, uses, fqn] : functions) {
            ++id;
            add<DeclarationRow>({{id, 1, name, fqn, "function", true, id, id + 1, uses}});
        }
    }

    // The names and uses of what is found, in order.
    [[nodiscard]] std::string found(const std::string& arguments) const {
        std::string names;
        const json answer = json::parse(run("find --index index.db --format json " + arguments).out);
        for (const json& declaration : answer["declarations"]) {
            names += declaration["name"].get<std::string>() + " " + declaration["uses"].dump() + "; ";
        }
        return names;
    }
};

TEST_F(Lookup, ListsFilesInColumns) {
    EXPECT_EQ(run("files --index index.db").out, "Path           Language    Declarations  Their lines  Test\n"
                                                 "src/a.ts       typescript            12            7\n"
                                                 "src/é.test.ts  typescript             0            0  test\n"
                                                 "src/\uFFFD.ts                              0            0\n");
    EXPECT_EQ(run("files 'src/?.ts' --test src/a.ts none --format json --index index.db").out,
              "{\n\"files\": [\n"
              R"({"path":"src/a.ts","language":"typescript","declarations":12,"declared_lines":7,"is_test":true},)"
              "\n"
              R"({"path":"src/�.ts","language":null,"declarations":0,"declared_lines":0,"is_test":false})"
              "\n]\n}\n");
    const Outcome none = run("files scr --index index.db");
    EXPECT_EQ(none.exit_code, 1);
    EXPECT_EQ(none.err, "wiki-scope: scr: not in the index; did you mean src?\n");
}

TEST_F(Lookup, FindsTheWholeNameFirstThenItsBeginningThenAPart) {
    declare({{"unmap", 9, ""},
             {"mapper", 1, ""},
             {"MAP", 8, ""},
             {"map", 2, ""},
             {"Mapped", 7, ""},
             {"map", 3, ""},
             {"mapping", 1, ""},
             {"ma", 99, ""},
             {"flatMap", 10, ""}});
    EXPECT_EQ(found("map"), "map 3; map 2; MAP 8; mapper 1; mapping 1; Mapped 7; unmap 9; flatMap 10; ");
    const Outcome some = run("find map --limit 2 --index index.db");
    EXPECT_EQ(some.out, "Name  Kind      Place           Uses\n"
                        "map   function  src/a.ts:L6-L7     3\n"
                        "map   function  src/a.ts:L4-L5     2\n");
    EXPECT_EQ(some.err, "wiki-scope: ... and 6 more; --limit 8 lists all\n");
    EXPECT_EQ(run("find nothing --index index.db").err,
              "wiki-scope: nothing: no declaration of the index is called so, not even in part\n");
}

TEST_F(Lookup, FindsByTheEndOfAWholeName) {
    declare({{"next", 1, "src.a.ts.Subject.next"},
             {"next", 2, "src.a.ts.MySubject.next"},
             {"next", 3, "Subject.next"},
             {"Subject.nextTo", 4, ""}});
    EXPECT_EQ(found("Subject.next"), "next 3; next 1; Subject.nextTo 4; ");
}

TEST_F(Lookup, PrintsNoCharacterThatATerminalObeys) {
    declare({{"f", 1, "f"}});
    change("UPDATE files SET path = 'src/' || char(27, 155, 8238, 127) || '.ts' WHERE id = 1;"
           "UPDATE symbols SET name = 'f' || char(27, 155, 8238, 127)");
    folder.write("in.scip", scip::scip_file({scip::ScipDocument("a.ts")}));
    ASSERT_EQ(run("import in.scip --index new.db").exit_code, 0);
    SqliteConnection(folder / "new.db", SqliteConnection::Mode::CREATE)
        .execute(
            R"(UPDATE meta SET value = replace(replace(value, 'indexer', '\u001b\u009b'), 'a.ts', '\u202e\u007f'))");
    for (const std::string command :
         {"files --index index.db", "files none src/.ts \u009B\u202E --index index.db", "find f --index index.db",
          "page src --checkout . --index index.db", "stats --index new.db", "import in.scip --index \x1B.db"}) {
        const Outcome outcome = run(command);
        const std::string said = outcome.out + outcome.err;
        EXPECT_FALSE(said.empty());
        for (const std::string control : {"\x1B", "\u009B", "\u202E", "\x7F"}) {
            EXPECT_EQ(said.find(control), std::string::npos) << command << " said " << said;
        }
    }
}

TEST_F(Lookup, TellsWhatAnIndexIsMadeOf) {
    folder.write("in.scip", scip::scip_file({scip::ScipDocument("a.ts").defines(scip::F).refers(scip::F),
                                             scip::ScipDocument("/b.ts"), scip::ScipDocument("c", "klingon")}));
    ASSERT_EQ(run("import in.scip --index new.db").exit_code, 0);
    const std::string stats = run("stats --index new.db").out;
    EXPECT_TRUE(
        stats.starts_with("new.db: 2 files, 1 declaration, 1 edge, without sources; indexed by indexer 1.2\nMade 2"));
    EXPECT_TRUE(stats.ends_with("Skipped: 1 document without a usable path\n"
                                "No source could be read: a.ts, c; name the indexed folder with --checkout\n\n"
                                "Language    Files\n"
                                "klingon         1\n"
                                "typescript      1\n\n"
                                "Kind      Declarations\n"
                                "function             1\n\n"
                                "Resolution  Edges  References\n"
                                "ambiguous       0           0\n"
                                "import          0           0\n"
                                "local           1           1\n"
                                "unique          0           0\n"))
        << stats;
    const json machine = json::parse(run("stats --index new.db --format json").out);
    EXPECT_EQ(machine["bytes"], std::filesystem::file_size(folder / "new.db"));
    EXPECT_EQ(machine["report"]["source"], "in.scip");
    EXPECT_TRUE(
        run("stats --index index.db").err.ends_with(": does not say how it was made; import the SCIP file again\n"));
}

TEST_F(Lookup, ChecksAllOfAnIndexWhenItIsAsked) {
    folder.write("in.scip", scip::scip_file({scip::ScipDocument("a.ts").defines(scip::F)}));
    ASSERT_EQ(run("import in.scip --index whole.db").exit_code, 0);
    const json checked_whole = json::parse(run("stats --check --format json --index whole.db").out);
    EXPECT_EQ(checked_whole["checked"], true);
    EXPECT_EQ(checked_whole["checksums"], true);
    EXPECT_NE(run("stats --check --index whole.db").out.find("\nChecked: "), std::string::npos);
    EXPECT_EQ(run("stats --index whole.db").out.find("hecke"), std::string::npos);

    change("INSERT INTO meta VALUES('report', '" + to_json(indexing::ImportReport()) + "')");
    EXPECT_NE(run("stats --index ./index.db").out.find("\nWithout checksums, "), std::string::npos);
    declare({{"needle", 1, ""}});
    std::string stale = folder.read("index.db");
    stale[stale.find("needle")] = 'N';  // in the table, or in what names are found by
    folder.write("stale.db", stale);
    const Outcome checked = run("stats --check --index stale.db");
    EXPECT_EQ(checked.exit_code, 1);
    EXPECT_EQ(checked.err,
              "wiki-scope: stale.db: damaged: row 1 missing from index symbols_by_name; it is not a whole wiki-scope "
              "index: import the SCIP file again\n");
}

}  // namespace
}  // namespace host
