// The queries over a real index file.

#include "embedded/page/page.h"
#include "embedded/sqlite/bound_list.h"
#include "embedded/sqlite/sqlite_database.h"
#include "storage/grounding_queries.h"
#include "tests/embedded/indexed_folder.h"
#include "workers/wiki/scope_tests.h"

#include <sqlite3.h>

#include <algorithm>
#include <limits>

namespace embedded {
namespace {

using Numbers = std::vector<std::int64_t>;
using Paths = std::vector<std::string>;

class Index : public IndexedFolder {
  protected:
    const Connection connection = open_index(index);
};

TEST_F(Index, GivesFilesInTheOrderOfThePathsEachOnce) {
    add<FileRow>({{1, "a.ts", "typescript"}, {2, "b \"\\|\n.ts"}, {4, "\xFF.ts", "typescript"}});
    change("INSERT INTO files(id, path, language) VALUES(3, 'c.ts', '')");
    SqliteDatabase db(connection, {});
    const auto files = scope_files(db, Paths{"c.ts", "b \"\\|\n.ts", "none", "a.ts", "c.ts", "\xFF.ts"});
    ASSERT_TRUE(std::ranges::equal(files, Numbers{3, 2, 1, 4}, {}, &storage::ScopeFile::id));
    EXPECT_EQ(files[0].language, "");
    EXPECT_EQ(files[1].language, std::nullopt);
    EXPECT_TRUE(files[2].language->same_buffer(*files[3].language));
}

TEST_F(Index, GivesDeclarationsByFileThenLineThenId) {
    add<FileRow>({{1, "a.ts"}, {2, "b.ts"}});
    add<DeclarationRow>({{5, 1, "later", "m.later", "class", true, 9, 10},
                         {3, 1, "same", "", "enum", false, 2, 2},
                         {2, 1, "line", "", "enum", false, 2, 9}});
    change("INSERT INTO symbols VALUES(1, 2, 'b', NULL, NULL, NULL, NULL, 99999999999, NULL)");
    SqliteDatabase db(connection, {});
    const auto symbols = scope_symbols(db, std::vector<storage::FileId>{2, 1, 2});
    ASSERT_TRUE(std::ranges::equal(symbols, Numbers{1, 2, 3, 5}, {}, &storage::ScopeSymbol::id));
    EXPECT_EQ(symbols[0].kind, "");
    EXPECT_EQ(symbols[0].start_line, 0);
    EXPECT_EQ(symbols[0].end_line, std::numeric_limits<std::int32_t>::max());
    EXPECT_TRUE(symbols[3].is_export);
    EXPECT_FALSE(symbols[2].is_export);
    EXPECT_EQ(symbols[3].fqn, "m.later");
    EXPECT_TRUE(symbols[1].kind.same_buffer(symbols[2].kind));
}

TEST_F(Index, GivesReferencesBySourceThenTargetThenResolution) {
    add<FileRow>({{1, "a.ts"}, {2, "page.ts"}, {3, "test/a.ts"}, {4, "z.ts"}});
    add<DeclarationRow>({{1, 2, "one", "one", "class", true, 1, 1},
                         {2, 2, "two", "two", "class", true, 2, 2},
                         {3, 4, "far", "z.far", "function", true, 3, 4}});
    add<EdgeRow>({{4, 2, IMPORT, 1},
                  {4, 1, UNIQUE, 2},
                  {4, 1, IMPORT, 3},
                  {1, 2, IMPORT, 4},
                  {2, 1, LOCAL, 5},
                  {2, 3, IMPORT, 6},
                  {1, 3, IMPORT, 7},
                  {3, 2, IMPORT, 8},
                  {3, 1, UNIQUE, 9}});
    add<EdgeRow>({{9, 1, IMPORT, 1}, {2, 9, IMPORT, 1}});  // from no file, to no declaration
    SqliteDatabase db(connection, {});
    const std::vector<storage::FileId> page{2};
    const auto inbound = inbound_references(db, page);
    EXPECT_TRUE(std::ranges::equal(inbound, Numbers{4, 5, 9, 8, 3, 2, 1}, {}, &storage::InboundReference::refs));
    const auto outbound = outbound_references(db, page);
    ASSERT_EQ(outbound.size(), 1U);
    EXPECT_EQ(outbound[0].refs, 6);
    EXPECT_EQ(outbound[0].target.path, "z.ts");
    EXPECT_EQ(outbound[0].target.fqn, "z.far");
    const auto tests = wiki::importing_tests(db, scope_files(db, Paths{"page.ts", "z.ts"}));
    EXPECT_EQ(tests, (wiki::TestImports{{"page.ts", {"test/a.ts"}}}));
}

TEST_F(Index, ReadsFilesAndDeclarationsThatDoNotStandTogether) {
    EXPECT_EQ(bound_ranges({7, 3, 1, 2, 2, 9}), "[[1,3],[7,7],[9,9]]");
    EXPECT_EQ(bound_ranges({}), "[]");
    add<FileRow>({{1, "a.ts"}, {2, "b.ts"}, {3, "c.ts"}, {5, "d.ts"}});
    add<DeclarationRow>({{1, 5, "d", "", "", true, 1, 1},
                         {2, 2, "b", "", "", true, 2, 2},
                         {4, 1, "a", "", "", true, 1, 1},
                         {8, 3, "c", "", "", true, 1, 1},
                         {9, 7, "lost", "", "", true, 1, 1}});
    add<EdgeRow>({{1, 1, IMPORT, 1}, {2, 8, IMPORT, 2}, {3, 2, IMPORT, 3}, {5, 4, IMPORT, 4}});
    SqliteDatabase db(connection, {});
    const std::vector<storage::FileId> page{5, 1, 3, 5, 7};
    EXPECT_TRUE(std::ranges::equal(scope_symbols(db, page), Numbers{1, 4, 8}, {}, &storage::ScopeSymbol::id));
    EXPECT_TRUE(
        std::ranges::equal(inbound_references(db, page), Numbers{1, 2, 4}, {}, &storage::InboundReference::refs));
    EXPECT_TRUE(
        std::ranges::equal(outbound_references(db, page), Numbers{1, 3, 4}, {}, &storage::OutboundReference::refs));
}

TEST_F(Index, KnowsTheLanguagesWithResolvedImports) {
    add<LanguageRow>({{"typescript", true}, {"lua", false}, {"go", true}});
    SqliteDatabase db(connection, {});
    const std::vector<models::Text> languages{"lua", "rust", "typescript"};
    EXPECT_EQ(import_resolved_languages(db, languages), std::vector<models::Text>{"typescript"});
}

TEST_F(Index, IsReadInOneStateWhileItIsWritten) {
    change("PRAGMA journal_mode = WAL");
    add<FileRow>({{1, "a.ts"}, {2, "b.ts"}});
    add<DeclarationRow>({{1, 1, "f", "f", "function", true, 1, 1}});
    add<EdgeRow>({{2, 1, IMPORT, 1}});
    const auto write_before_a_statement = [](unsigned, void* path, void*, void*) {
        Connection(*static_cast<const std::string*>(path), Connection::Mode::CREATE)
            .execute("BEGIN; UPDATE symbols SET start_line = start_line + 1; UPDATE edges SET refs = refs + 1; COMMIT");
        return 0;
    };
    SqliteDatabase db(connection, {});
    sqlite3_trace_v2(connection.handle(), SQLITE_TRACE_STMT, write_before_a_statement, &index);
    const Page page = load_page(db, Checkout(folder / ""), Paths{"a.ts"});
    EXPECT_EQ(page.facts.inbound.at(0).refs, page.facts.symbols.at(0).start_line);
    const Connection another = open_index(index);
    SqliteDatabase later(another, {});
    EXPECT_GT(scope_symbols(later, std::vector<storage::FileId>{1}).at(0).start_line,
              page.facts.symbols.at(0).start_line + 5);
}

TEST_F(Index, NeedsOneStatementForAPageOfAnySizeAndNoFullScan) {
    change("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
           "INSERT INTO files(id, path, language) SELECT i, printf('src/%d.ts', i), 'typescript' FROM n");
    change("INSERT INTO symbols SELECT id, id, 'f', 'f', 'function', 1, 1, 2, 0 FROM files");
    change("INSERT INTO edges SELECT id, id % 5000 + 1, 1, 1 FROM files");
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
    // "src" as a file, then as a folder; the content that was indexed; whether there are other files; the files, their
    // declarations and paths; the edges into them; the names of resolutions; the languages; the edges out of them; the
    // edges into them from tests.
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
}  // namespace embedded
