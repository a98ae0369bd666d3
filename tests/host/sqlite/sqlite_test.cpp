// The index in a file: one state, few statements, and the watch over them.

#include "host/page/page.h"
#include "host/sqlite/bound_list.h"
#include "host/sqlite/sqlite_database.h"
#include "storage/grounding_queries.h"
#include "tests/host/indexed_folder.h"

#include <sqlite3.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {
namespace {

using Paths = std::vector<std::string>;

TEST(ConnectionWatch, EndsALongStatementWithWhatItThrows) {
    const TemporaryFolder folder;
    SqliteConnection connection(folder / "a.db", SqliteConnection::Mode::CREATE);
    connection.watch([] { throw std::out_of_range("enough"); });
    const std::string endless =
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";
    EXPECT_THROW(connection.execute(endless), std::out_of_range);
    EXPECT_THROW(Statement(connection, endless).step(), std::out_of_range);
    EXPECT_THROW(connection.execute("SELECT * FROM nothing"), SqliteError);
}

TEST(ConnectionLimit, EndsAStatementThatCostsMoreThanTheFileAndItsParametersExplain) {
    const TemporaryFolder folder;
    SqliteConnection(folder / "a.db", SqliteConnection::Mode::CREATE).execute("CREATE TABLE t(x)");
    const SqliteConnection connection(folder / "a.db", SqliteConnection::Mode::READ);
    const std::string endless = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) ";
    EXPECT_THROW(connection.execute(endless + "SELECT count(*) FROM n"), SqliteError);
    Statement texts(connection, endless + "SELECT CAST(zeroblob(100000) AS TEXT) FROM n");
    const auto read_texts = [&] {
        for (int row = 0; row < 100; ++row) {
            texts.step();
            EXPECT_EQ(texts.text(0).size(), 100'000U);
        }
    };
    EXPECT_THROW(read_texts(), SqliteError);
    Statement list(connection, "SELECT count(*) FROM json_each(?1) WHERE value || key || value || key <> ''");
    list.bind(1, bound_list(Paths(2'000'000, "a")));
    list.step();
    EXPECT_EQ(list.integer(0), 2'000'000);
}

TEST(BoundRanges, AreTheRunsOfTheIntegers) {
    EXPECT_EQ(bound_ranges({7, 3, 1, 2, 2, 9}), "[[1,3],[7,7],[9,9]]");
    EXPECT_EQ(bound_ranges({}), "[]");
}

class SqliteQueries : public IndexedFolder {
  protected:
    const SqliteConnection connection = open_index(index);
};

TEST_F(SqliteQueries, AreOfOneStateWhileItIsWritten) {
    change("PRAGMA journal_mode = WAL");
    add<FileRow>({{1, "a.ts"}, {2, "b.ts"}});
    add<DeclarationRow>({{1, 1, "f", "f", "function", true, 1, 1}});
    add<EdgeRow>({{2, 1, IMPORT, 1}});
    const auto write_before_a_statement = [](unsigned, void* path, void*, void*) {
        SqliteConnection(*static_cast<const std::string*>(path), SqliteConnection::Mode::CREATE)
            .execute("BEGIN; UPDATE symbols SET start_line = start_line + 1; UPDATE edges SET refs = refs + 1; COMMIT");
        return 0;
    };
    SqliteDatabase db(connection, {});
    sqlite3_trace_v2(connection.handle(), SQLITE_TRACE_STMT, write_before_a_statement, &index);
    const Page page = load_page(db, Checkout(folder / ""), Paths{"a.ts"});
    EXPECT_EQ(page.facts.inbound.at(0).refs, page.facts.symbols.at(0).start_line);
    const SqliteConnection another = open_index(index);
    SqliteDatabase later(another, {});
    EXPECT_GT(scope_symbols(later, std::vector<storage::FileId>{1}).at(0).start_line,
              page.facts.symbols.at(0).start_line + 5);
}

TEST_F(SqliteQueries, NeedOneStatementForAPageOfAnySizeAndNoFullScan) {
    change("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
           "INSERT INTO files(id, path, language) SELECT i, printf('src/%d.ts', i), 'typescript' FROM n");
    change("INSERT INTO symbols SELECT id, id, 'f', 'f', 'function', 1, 1, 2, 0 FROM files");
    change("INSERT INTO edges SELECT id, id % 5000 + 1, 1, 1, 1 FROM files");
    SqliteDatabase db(connection, {});

    std::vector<std::string> queries;
    const auto note = [](unsigned, void* noted, void* statement, void*) {
        static_cast<std::vector<std::string>*>(noted)->push_back(sqlite3_sql(static_cast<sqlite3_stmt*>(statement)));
        return 0;
    };
    sqlite3_trace_v2(connection.handle(), SQLITE_TRACE_STMT, note, &queries);
    const Checkout checkout(folder / "");
    const Page page = load_page(db, checkout, Paths{"src"});
    EXPECT_EQ(page.facts.inbound.size(), 5000U);
    EXPECT_EQ(page.facts.outbound.size(), 5000U);

    sqlite3_trace_v2(connection.handle(), 0, nullptr, nullptr);
    // "src" as a file, then as a folder; the content that was indexed; whether there are other files; which files are
    // damaged; the files, their declarations and paths; the edges into them; the names of resolutions; the languages;
    // the edges out of them; the edges into them from tests.
    EXPECT_EQ(queries.size(), 12U) << testing::PrintToString(queries);
    std::erase_if(queries, [](const std::string& query) { return query.ends_with("LIMIT ?1)"); });  // ends early
    for (const std::string& query : queries) {
        Statement plan(connection, "EXPLAIN QUERY PLAN " + query);
        while (plan.step()) {
            const std::string step(plan.text(3));
            EXPECT_FALSE(step.starts_with("SCAN edge") || step.starts_with("SCAN symbol") ||
                         step.starts_with("SCAN file") || step.starts_with("SCAN source"))
                << step << " in " << query;
        }
    }
}

}  // namespace
}  // namespace host
