// Index files that somebody has made to do harm: each is refused in one line.

#include "fixtures/scip_builder.h"
#include "tests/host/indexed_folder.h"

#include <sqlite3.h>

#include <algorithm>
#include <vector>

namespace host {
namespace {

class CraftedIndex : public IndexedFolder {
  protected:
    CraftedIndex() {
        add<FileRow>({{1, "a.ts"}});
        add<DeclarationRow>({{1, 1, "f", "f", "function", true, 1, 1}});
    }

    // Runs a command that might never end.
    [[nodiscard]] Outcome run_bounded(const std::string& arguments) const {
        return shell("timeout 60 wiki-scope " + arguments);
    }

    void expect_refusal(const std::string& arguments, const std::string& says, const std::string& crafted) const {
        const Outcome outcome = run_bounded(arguments);
        EXPECT_EQ(outcome.exit_code, 1) << arguments << " of " << crafted;
        EXPECT_EQ(outcome.out, "") << arguments << " of " << crafted;
        EXPECT_TRUE(outcome.err.starts_with("wiki-scope: index.db: " + says)) << outcome.err << " of " << crafted;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err << " of " << crafted;
    }

    void expect_refusals(const std::string& says, const std::string& crafted) const {
        for (const std::string command :
             {"page . --checkout .", "page a.ts --checkout . --format json", "find f", "files", "stats --check"}) {
            expect_refusal(command + " --index index.db", says, crafted);
        }
    }
};

TEST_F(CraftedIndex, HasTheTablesAndIndexesOfAnImportAndNothingElse) {
    folder.write("in.scip", scip::scip_file({scip::ScipDocument("a.ts")}));
    const std::string sound = folder.read("index.db");
    const std::string endless = "AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i AS ";
    for (const auto& [crafted, says] : std::vector<std::pair<std::string, std::string>>{
             {"DROP TABLE files; CREATE VIEW files " + endless + "id, 'a.ts' AS path FROM n", "not a wiki-scope index"},
             {"DROP TABLE meta; CREATE VIEW meta " + endless + "key, '4' AS value FROM n", "not a wiki-scope index"},
             {"DROP TABLE meta; CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT AS (hex(zeroblob(900000000))))",
              "not a wiki-scope index"},
             {"DROP TABLE languages; CREATE VIEW languages " + endless + "name, 1 AS import_resolved FROM n",
              "its tables"},
             {"ALTER TABLE files ADD COLUMN more AS (hex(zeroblob(900000000)))", "its tables"},
             {"CREATE INDEX more ON files(hex(zeroblob(path)))", "its tables"},
             {"DROP INDEX symbols_by_name; CREATE INDEX symbols_by_name ON symbols(name, uses) WHERE abs(uses) > 0",
              "its tables"},
             {"CREATE TRIGGER more AFTER INSERT ON files BEGIN DELETE FROM meta; END", "its tables"},
             {"DROP TABLE languages; CREATE VIRTUAL TABLE languages USING rtree(name, import_resolved, more)",
              "its tables"},
             {"ANALYZE", "its tables"},
         }) {
        folder.write("index.db", sound);
        change(crafted);
        expect_refusals(says, crafted);
        const Outcome import = run_bounded("import in.scip --index index.db");
        EXPECT_EQ(import.exit_code, says == "its tables" ? 0 : 1) << crafted;
        EXPECT_EQ(std::ranges::count(import.err, '\n'), import.exit_code) << import.err;
    }
}

TEST_F(CraftedIndex, HasNoValueThatFillsTheMemory) {
    SqliteConnection connection(index, SqliteConnection::Mode::CREATE);
    sqlite3_limit(connection.handle(), SQLITE_LIMIT_LENGTH, 80 << 20);
    const std::string value = "CAST(zeroblob(70000000) AS TEXT)";
    connection.execute("UPDATE files SET path = 'a' || " + value + "; UPDATE symbols SET name = 'f' || " + value);
    expect_refusals("string or blob too big", value);
    EXPECT_THROW(connection.execute("SELECT hex(zeroblob(900000000))"), SqliteError);
}

// A page of a table's tree of which all children are one page.
std::string page_above(std::size_t child) {
    constexpr std::size_t SIZE = 4096;
    constexpr int CHILDREN = 600;
    const std::string number{static_cast<char>(child >> 24U), static_cast<char>(child >> 16U),
                             static_cast<char>(child >> 8U), static_cast<char>(child)};
    const std::string the_child = number + '\1';
    const std::size_t place = SIZE - the_child.size();
    const std::string short_place{static_cast<char>(place >> 8U), static_cast<char>(place)};
    std::string page = std::string("\5\0\0", 3) + static_cast<char>(CHILDREN >> 8) + static_cast<char>(CHILDREN & 0xFF);
    page += short_place + '\0' + number;
    for (int pointer = 0; pointer < CHILDREN; ++pointer) {
        page += short_place;
    }
    page.resize(place);
    return page + the_child;
}

TEST_F(CraftedIndex, HasNoTreeWhosePagesAreReadOverAndOver) {
    add<EdgeRow>({{1, 1, LOCAL, 1}});  // so that resolutions are read
    std::size_t root = 0;
    {
        const SqliteConnection connection(index, SqliteConnection::Mode::CREATE);
        Statement place(connection, "SELECT rootpage FROM sqlite_schema WHERE name = 'resolutions'");
        place.step();
        root = static_cast<std::size_t>(place.integer(0));
    }
    constexpr std::size_t SIZE = 4096;
    std::string bytes = folder.read("index.db");
    const std::size_t pages = bytes.size() / SIZE;
    bytes += bytes.substr((root - 1) * SIZE, SIZE);
    for (std::size_t level = 1; level < 6; ++level) {
        bytes += page_above(pages + level);
    }
    bytes.replace((root - 1) * SIZE, SIZE, page_above(pages + 6));
    bytes[31] = static_cast<char>(pages + 6);  // how many pages there are
    folder.write("index.db", bytes);
    expect_refusal("page a.ts --checkout . --index index.db", "damaged: what it holds does not end", "pages");
}

}  // namespace
}  // namespace host
