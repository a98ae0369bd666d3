// Indexes in a server, beside what pages and imports promise everywhere: tools/with-postgresql server_tests

#include "host/imports/import.h"
#include "host/location/index_at.h"
#include "host/page/page.h"
#include "host/page/page_json.h"
#include "host/page/page_markdown.h"
#include "host/postgresql/connection.h"
#include "host/postgresql/schema.h"
#include "host/postgresql/snapshot_tables.h"
#include "host/serve/index_connections.h"
#include "tests/host/postgresql/prepared_server.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace host::postgresql {
namespace {

using scip::F;
using scip::scip_file;
using scip::ScipDocument;

TEST_F(Server, IsPreparedInVersionsAlsoByTwoAtOnceAndNeverTakenBack) {
    owner.execute("DROP DATABASE tested WITH (FORCE)");
    owner.execute("CREATE DATABASE tested");
    expect_failure("page a --index postgresql:///tested",
                   "is not prepared for indexes; prepare it with: wiki-scope init");
    Connection old(database);
    EXPECT_EQ(migrate(old, 1), 0);
    expect_failure("page a --index postgresql:///tested", "is prepared for an older version of the schema; prepare it");
    expect_failure("import in.scip --index postgresql:///tested",
                   "for an older version of the schema; prepare it with");
    const auto prepare = [&] {
        Connection connection(database);
        return migrate(connection);
    };
    std::future<std::int64_t> other = std::async(std::launch::async, prepare);
    EXPECT_EQ(prepare() + other.get(), 1 + schema_version());  // one found version 1, the other what the first had made
    EXPECT_EQ(prepare(), schema_version());
    Connection(database).execute("INSERT INTO wiki_scope.versions VALUES(99, now())");
    expect_failure("page a --index postgresql:///tested", "version 99 of the schema, but this program knows version");
    expect_failure("init --index postgresql:///tested", "version 99 of the schema");
}

TEST_F(Server, SaysInOneLineWhatKeepsAPageFromBeingRead) {
    import(3);
    Connection connection(database);
    connection.execute("DROP ROLE IF EXISTS asked; CREATE ROLE asked LOGIN PASSWORD 'secret'");
    expect_failure("page a --index postgresql://asked:secrets@/tested",
                   "password authentication failed for user \"asked\"; "
                   "check the user and the password");
    expect_failure("page a --index postgresql://asked@/tested", "no password supplied; check the user");
    expect_failure("page a --index postgresql:///absent", "database \"absent\" does not exist; check the name");
    expect_failure("page a --index postgresql:///tested --repository two",
                   "no index of a repository called two (there are one); make one with: wiki-scope import FOLDER "
                   "--index postgresql:///tested --repository two");
    const std::string page = "page a.ts --checkout . --repository one --index postgresql:///tested";
    {
        Connection holder(database);
        holder.execute("BEGIN; LOCK TABLE wiki_scope.edges");
        expect_failure(page + "?options=-cstatement_timeout%3D100",
                       "canceling statement due to statement timeout; ask for less, or raise statement_timeout");
        std::future<void> killed = std::async(std::launch::async, [&] {
            while (number(owner, "SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock'") == 0) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            owner.execute("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE wait_event_type = 'Lock'");
        });
        expect_failure(page, "terminating connection due to administrator command; try again");
        killed.get();
    }
    connection.execute("DROP ROLE asked; DROP TABLE wiki_scope.languages");
    expect_failure(page, "\"wiki_scope.languages\" does not exist; it is not a whole wiki-scope index");
}

TEST_F(Server, GivesAPoolCleanSessionsBack) {
    const char* const pool = std::getenv("POOL");
    if (pool == nullptr) {
        GTEST_SKIP() << "no pool is installed";
    }
    const std::string pooled = "postgresql:///tested?port=6432&host=" + std::string(pool);
    folder.write("in.scip", scip_file({ScipDocument("a.ts").defines(F)}));
    Connection client{Address(pooled)};
    const std::int64_t session = number(client, "SELECT pg_backend_pid()");
    for (const std::string command :
         {"init", "import in.scip --repository one", "import in.scip --repository one", "stats --repository one"}) {
        EXPECT_EQ(run(command + " --index '" + pooled + "'").exit_code, 0) << command;
    }
    EXPECT_EQ(number(client, "SELECT pg_backend_pid()"), session);
    EXPECT_EQ(number(client, "SELECT count(*) FROM pg_settings WHERE source = 'session' AND name IN ('search_path', "
                             "'synchronous_commit', 'idle_in_transaction_session_timeout', 'enable_sort', 'jit')"),
              0);
    EXPECT_EQ(number(client, "SELECT count(*) FROM pg_locks WHERE locktype = 'advisory'"), 0);
}

TEST_F(Server, ARepositoryIsCalledAsItsFolderReallyIsWhicheverWayLeadsThere) {
    folder.write("in.scip", scip_file({ScipDocument("a.ts").defines(F)}));
    for (const std::string checkout : {".", "link", "link/", "\"$PWD\""}) {
        EXPECT_EQ(
            shell("ln -sfn . link && wiki-scope import in.scip --index postgresql:///tested --checkout " + checkout)
                .exit_code,
            0)
            << checkout;
    }
    EXPECT_EQ(run("stats --index postgresql:///tested").exit_code, 0);
    Connection connection(database);
    EXPECT_EQ(number(connection, "SELECT count(*) FROM wiki_scope.repositories"), 1);
}

TEST_F(Server, AFullDiskLeavesTheOldIndexAndSaysSo) {
    const char* const disk = std::getenv("SMALL_DISK");
    if (disk == nullptr) {
        GTEST_SKIP() << "no small disk could be made";
    }
    owner.execute("DROP DATABASE tested WITH (FORCE)");
    owner.execute("DROP TABLESPACE IF EXISTS small");
    owner.execute("CREATE TABLESPACE small LOCATION '" + std::string(disk) + "'");
    owner.execute("CREATE DATABASE tested TABLESPACE small");
    {
        Connection connection(database);
        migrate(connection);
        import(7);
        std::string noise;
        for (std::uint32_t state = 1; noise.size() < 20'000'000;) {
            state = state * 1'664'525U + 1'013'904'223U;
            noise += static_cast<char>('a' + (state >> 24U) % 26);
        }
        ScipDocument large("a.ts");
        for (std::size_t at = 0; at < noise.size(); at += 10'000) {
            large.defines(scip::symbol("x" + noise.substr(at, 10'000) + "()."));
        }
        folder.write("in.scip", scip_file({large}));
        expect_failure("import in.scip --repository one --index postgresql:///tested",
                       "; make room on the server's disk");
        EXPECT_EQ(lines(), 7);
    }
    owner.execute("DROP DATABASE tested WITH (FORCE)");
    owner.execute("DROP TABLESPACE small");
    owner.execute("CREATE DATABASE tested");
}

TEST_F(Server, AnImportWaitsUntilItsRowsAreVacuumed) {
    import(3);
    Connection other(database);
    other.begin("ISOLATION LEVEL READ COMMITTED", "LOCK TABLE wiki_scope.symbols IN SHARE UPDATE EXCLUSIVE MODE");
    std::future<void> second = std::async(std::launch::async, [&] { import(4); });
    while (number(owner, "SELECT count(*) FROM pg_locks WHERE NOT granted") == 0 &&
           second.wait_for(std::chrono::milliseconds(5)) == std::future_status::timeout) {
    }
    other.execute("COMMIT");
    second.get();
    EXPECT_EQ(number(other, "SELECT count(*) FROM pg_stat_user_tables WHERE vacuum_count = 2"), 8);
}

TEST_F(Server, OfTwoImportsIntoOneRepositoryTheSecondFailsAndOfTwoRepositoriesNone) {
    folder.write("in.scip", scip_file({ScipDocument("a.ts").defines(F)}));
    const std::unique_ptr<NewIndex> first = repository("one")->replace();
    first->claim("");
    expect_failure("import in.scip --repository one --index postgresql:///tested",
                   "postgresql:///tested (one): another import into this index is running (user owner, application "
                   "wiki-scope, process ");
    import(2, "two");
    EXPECT_EQ(lines("two"), 2);
    const std::unique_ptr<NewIndex> named = index_at(database.name())->replace();
    named->claim("/home/me/three/");
    EXPECT_EQ(named->name(), "postgresql:///tested (three)");
    const std::unique_ptr<NewIndex> nameless = index_at(database.name())->replace();
    EXPECT_THROW(nameless->claim(""), std::runtime_error);
}

TEST_F(Server, AnImportThatFailsLeavesTheOldIndexAndOneThatSucceedsNothingElse) {
    import(3);
    Connection connection(database);
    for (const bool is_killed : {false, true}) {
        const std::unique_ptr<NewIndex> half = repository()->replace();
        half->claim("");
        half->rows().add(FileRow{.id = 1, .path = "b.ts"});
        half->complete({.files = 1});
        if (is_killed) {
            kill_others();
            EXPECT_THROW(half->commit(), std::runtime_error);
        }
    }
    EXPECT_EQ(lines(), 3);
    const std::unique_ptr<NewIndex> short_of_rows = repository()->replace();
    short_of_rows->claim("");
    static_cast<void>(short_of_rows->rows());
    EXPECT_THROW(short_of_rows->complete({.files = 1}), std::runtime_error);
    Connection other(database);
    other.execute("INSERT INTO wiki_scope.files SELECT repository, left_over, 1, 'left', NULL, NULL, 0, 0 FROM "
                  "wiki_scope.repositories, LATERAL (VALUES (0), (snapshot + 1), (2147483647)) AS of(left_over)");
    kill_others();
    import(5);
    EXPECT_EQ(lines(), 5);
    Connection after(database);
    for (const SnapshotTable& table : SNAPSHOT_TABLES) {
        EXPECT_EQ(number(after, "SELECT count(*) FROM wiki_scope.repositories AS current JOIN wiki_scope." +
                                    std::string(table.name) +
                                    " AS row USING(repository) WHERE row.snapshot <> current.snapshot"),
                  0)
            << table.name;
    }
}

// A row that a policy hides is not changed, which is no failure to the server.
TEST_F(Server, AnImportThatIsKeptFromItsLastStepFailsAndTheNextOneSucceeds) {
    import(3);
    Connection connection(database);
    connection.execute(
        "DROP ROLE IF EXISTS writer; CREATE ROLE writer LOGIN; GRANT USAGE ON SCHEMA wiki_scope TO writer;"
        "GRANT SELECT, INSERT, UPDATE, DELETE ON ALL TABLES IN SCHEMA wiki_scope TO writer;"
        "ALTER TABLE wiki_scope.repositories ENABLE ROW LEVEL SECURITY;"
        "CREATE POLICY reading ON wiki_scope.repositories FOR SELECT USING (true)");
    expect_failure("import in.scip --repository one --index postgresql://writer@/tested",
                   "does not let the row of the repository be changed");
    import(4);
    EXPECT_EQ(lines(), 4);
    connection.execute("DROP OWNED BY writer; DROP ROLE writer");
}

TEST_F(Server, AnImportThatIsInterruptedAtItsEndDoesNotSayThatNothingWasChanged) {
    import(3);
    Connection connection(database);
    connection.execute("BEGIN; LOCK TABLE wiki_scope.notes IN SHARE MODE");  // which an import waits for to remove rows
    const auto next = [&](const std::string& name, const CheckInterrupt& watch) {
        const std::unique_ptr<NewIndex> made = repository(name)->replace();
        made->claim("");
        static_cast<void>(made->rows());
        made->complete({});
        made->watch(watch);
        made->commit();
    };
    EXPECT_THROW(next("two", [] { throw std::out_of_range("nothing was changed"); }), std::runtime_error);
    const std::string removing = "SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock'";
    next("one", [&] {
        if (number(owner, removing) != 0) {
            throw std::out_of_range("nothing was changed");
        }
    });
    EXPECT_EQ(lines(), 0);
    kill_others();
}

// A row in each table, of which each column is changed, and which is removed.
TEST_F(Server, NoticesEveryRowThatIsNotTheOneImported) {
    {
        const std::unique_ptr<NewIndex> made = repository()->replace();
        made->claim("");
        RowWriter& rows = made->rows();
        rows.note("key", "value");
        rows.add(FileRow{1, "a.ts", "typescript", 2, 3, 4});
        rows.add(LanguageRow{"typescript", true});
        rows.add(DeclarationRow{1, 1, "f", "m.f", "function", true, 1, 2, 3});
        rows.add(DescriptionRow{1, "f()", ""});
        rows.add(ResolutionRow{1, "import"});
        rows.add(EdgeRow{1, 1, 1, 1});
        made->complete({.files = 1, .declarations = 1, .edges = 1});
        made->commit();
    }
    Connection connection(database);
    std::vector<std::pair<std::string, std::string>> faults;  // tables, and what damages them
    std::size_t column_count = 0;
    for (const SnapshotTable& table : SNAPSHOT_TABLES) {
        faults.emplace_back(table.name, "DELETE FROM wiki_scope." + std::string(table.name));
        column_count += table.column_count();
    }
    Rows columns(
        connection,
        "SELECT table_name::text::bytea, ('UPDATE wiki_scope.' || table_name || ' SET ' || column_name || ' = ' || "
        "CASE data_type WHEN 'bytea' THEN column_name || ' || ''x''' WHEN 'boolean' THEN 'NOT ' || column_name "
        "ELSE '1 + ' || column_name END)::bytea FROM information_schema.columns WHERE table_schema = 'wiki_scope' "
        "AND table_name NOT IN ('repositories', 'versions') AND column_name NOT IN ('repository', 'snapshot')",
        {});
    while (columns.step()) {
        faults.emplace_back(columns.bytes(0), columns.bytes(1));
    }
    EXPECT_EQ(faults.size(), SNAPSHOT_TABLES.size() + column_count);
    const std::unique_ptr<IndexConnection> reader = repository()->connect();
    EXPECT_NO_THROW(reader->read()->check());
    for (const auto& [table, fault] : faults) {
        connection.execute("CREATE TABLE kept AS TABLE wiki_scope." + table);
        connection.execute(fault);
        EXPECT_EQ(run("stats --check --repository one --index postgresql:///tested").err,
                  "wiki-scope: postgresql:///tested (one): the rows of wiki_scope." + table +
                      " are not those of the import; it is not a whole wiki-scope index: import the SCIP file again\n")
            << fault;
        connection.execute("DELETE FROM wiki_scope." + table + "; INSERT INTO wiki_scope." + table +
                           " TABLE kept; DROP TABLE kept");
    }
    EXPECT_NO_THROW(reader->read()->check());
    connection.execute("UPDATE wiki_scope.names SET rows = rows || 'x'");
    expect_failure("find f --repository one --index postgresql:///tested", "the rows of wiki_scope.names are not");
}

TEST_F(Server, ReadsAnIndexFromBeforeThereWereChecksumsAndSaysSo) {
    owner.execute("DROP DATABASE tested WITH (FORCE)");
    owner.execute("CREATE DATABASE tested");
    Connection connection(database);
    migrate(connection, 2);
    connection.execute("INSERT INTO wiki_scope.repositories(name, snapshot, made) VALUES('one', 1, now());"
                       "INSERT INTO wiki_scope.symbols VALUES(1, 1, 7, 1, '\\\\Na\\303ME', '', '', true, 1, 1, 3)");
    connection.execute(
        "ALTER TABLE wiki_scope.edges RENAME TO whole;"
        "CREATE TABLE wiki_scope.edges(LIKE wiki_scope.whole INCLUDING ALL) PARTITION BY HASH(repository);"
        "CREATE TABLE wiki_scope.edges_0 PARTITION OF wiki_scope.edges "
        "FOR VALUES WITH (MODULUS 1, REMAINDER 0);"
        "DROP TABLE wiki_scope.whole; INSERT INTO wiki_scope.edges VALUES(1, 1, 2, 7, 1, 5)");
    migrate(connection);
    const std::unique_ptr<IndexConnection> reader = repository()->connect();
    int found = 0;
    reader->read()->read_names("\\nA\xC3me", [&](const NameRow& row) {
        EXPECT_EQ(std::tuple(row.declaration, row.name, row.uses), std::tuple(7, "\\Na\xC3ME", 3));
        ++found;
    });
    EXPECT_EQ(found, 1);
    reader->read()->read_edges_into({7}, [&](const EdgeRow& row) {
        EXPECT_EQ(row, (EdgeRow{2, 7, 1, 5, 0}));
        ++found;
    });
    EXPECT_EQ(found, 2);
    EXPECT_NO_THROW(reader->read()->check());
    EXPECT_FALSE(reader->read()->origin().has_checksums);
    import(3);
    EXPECT_TRUE(reader->read()->origin().has_checksums);
}

// The planner knows the rows of one snapshot, and not those of the other.
TEST_F(Server, ReadsTheRowsThatItIsAskedForAloneRightAfterAnImport) {
    constexpr RowId MANY = 500;
    import(3);
    Connection(database).execute("ANALYZE");
    {
        const std::unique_ptr<NewIndex> large = repository("large")->replace();
        large->claim("");
        for (RowId id = 1; id <= MANY; ++id) {
            const std::string name = "f" + std::to_string(id);
            large->rows().add(FileRow{.id = id, .path = name});
            large->rows().add(DeclarationRow{id, id, name, name, "function", true, 1, 1, 1});
            large->rows().add(EdgeRow{id, id, 1, 1});
        }
        large->complete({.files = MANY, .declarations = MANY, .edges = MANY});
        large->commit();
    }
    kill_others();
    Connection(database).execute("SELECT pg_stat_reset()");
    {
        const std::unique_ptr<IndexConnection> connection = repository("large")->connect();
        const std::unique_ptr<storage::Database> db = connection->read();
        const std::vector<std::string> path{"f7"};
        const auto file = [](const FileRow& row) { EXPECT_EQ(row.id, 7); };
        const auto declaration = [](const DeclarationRow& row) { EXPECT_EQ(row.id, 7); };
        db->read_files_at(path, file);
        db->read_files({7}, file);
        db->read_files_below("f7", file);
        db->read_declarations_in({7}, declaration);
        db->read_declarations({7}, declaration);
        db->read_declarations_named("f7", declaration);
        const auto edge = [](const EdgeRow& row) { EXPECT_EQ(std::tuple(row.source, row.target), std::tuple(7, 7)); };
        db->read_edges_into({7}, edge);
        db->read_edges_out_of({7}, edge);
    }
    kill_others();  // which tell what they have read at their end
    Connection connection(database);
    EXPECT_LT(number(connection, "SELECT sum(idx_tup_read)::bigint FROM pg_stat_user_indexes"), 20);
    EXPECT_EQ(number(connection, "SELECT sum(seq_tup_read)::bigint FROM pg_stat_user_tables"), 0);
}

TEST_F(Server, IsReadInItsLatestStateAfterThereWasNoneToRead) {
    const std::unique_ptr<IndexConnection> connection = repository()->connect();
    EXPECT_THROW(static_cast<void>(connection->read()), UnusableIndex);
    import(3);
    EXPECT_EQ(lines(*connection->read()), 3);
}

TEST_F(Server, APageIsOfOneStateAndTheNextOneOfTheNewIndex) {
    import(3);
    std::vector<std::string> told;
    serve::IndexConnections connections(repository(), [&] { told.emplace_back("replaced"); });
    connections.borrow([] {},
                       [&](storage::Database& db) {
                           EXPECT_EQ(lines(db), 3);
                           import(4);
                           EXPECT_EQ(lines(db), 3);
                           EXPECT_EQ(db.count_files(9), 1);
                       });
    EXPECT_EQ(told.size(), 0U);
    kill_others();  // a connection that is lost while nobody uses it is not used any more
    connections.borrow([] {}, [&](storage::Database& db) { EXPECT_EQ(lines(db), 4); });
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(Server, IsWaitedForNoLongerThanTheWatchAllows) {
    Connection connection(database);
    connection.watch([] { throw std::out_of_range("enough"); });
    EXPECT_THROW(connection.execute("SELECT pg_sleep(100)"), std::out_of_range);
    EXPECT_TRUE(connection.is_lost());
    EXPECT_THROW(connection.execute("SELECT 1"), PostgresqlError);
}

// The pages of random files of an index, one after the other.
std::string random_pages(const Index& index, const Checkout& checkout) {
    const std::unique_ptr<IndexConnection> connection = index.connect();
    std::ostringstream out;
    std::mt19937 random(1);
    for (int page = 0; page < 40; ++page) {
        std::vector<std::string> paths;
        for (std::size_t count = 1 + random() % 12; count > 0; --count) {
            paths.push_back("f" + std::to_string(random() % 50) + ".ts");
        }
        const std::unique_ptr<storage::Database> db = connection->read();
        const Page made = load_page(*db, checkout, paths);
        write_json(out, made, page_values(made, *db));
        write_markdown(out, made, *db, {});
    }
    return out.str();
}

TEST_F(Server, GivesTheSamePagesAsAFile) {
    std::mt19937 random(7);
    const auto below = [&](RowId count) { return static_cast<RowId>(random()) % count; };
    const std::vector<std::string> kinds{"class", "function", "constant", "attribute", "module"};
    std::vector<std::string> paths;
    for (int file = 10; file < 50; ++file) {
        paths.push_back((below(5) == 0 ? "test/f" : "f") + std::to_string(file) + ".ts");
    }
    std::ranges::sort(paths);
    const host::SqliteConnection file_connection(index, host::SqliteConnection::Mode::CREATE);
    Transaction transaction(file_connection);
    SqliteRowWriter writer(file_connection);
    for (std::size_t file = 0; file < paths.size(); ++file) {
        writer.add(FileRow{.id = static_cast<RowId>(2 * file), .path = paths[file], .language = "typescript"});
    }
    RowId id = 0;
    for (RowId file = 0; file < 80; file += 2) {
        for (RowId count = below(6); count > 0; --count) {
            id += 1 + below(2);
            const std::string name = std::string(below(3) == 0 ? "_" : "") + "d" + std::to_string(below(90));
            const RowId line = 1 + below(40);
            writer.add(DeclarationRow{id, file, name, "m." + name, kinds[random() % kinds.size()], below(2) == 0, line,
                                      line + below(30), below(9)});
            writer.add(DescriptionRow{id, name + "()", below(2) == 0 ? "What it does." : ""});
        }
    }
    std::set<std::tuple<RowId, RowId, RowId>> edges;
    while (edges.size() < 600) {
        edges.emplace(2 * below(40), 1 + below(id + 3), 1 + below(3));
    }
    for (const auto& [source, target, resolution] : edges) {
        writer.add(EdgeRow{source, target, resolution, 1 + below(9)});
    }
    writer.add(LanguageRow{"typescript", true});
    transaction.commit();
    copy_index(SqliteIndex(index), *repository());
    const Checkout checkout(folder / "");
    const std::string pages = random_pages(SqliteIndex(index), checkout);
    EXPECT_GT(pages.size(), 100'000U);
    EXPECT_EQ(random_pages(*repository(), checkout), pages);
}

// Texts that a server knows no texts of, and those that are longer than an entry of its indexes can be.
TEST_F(Server, KeepsEveryByteOfNamesOfAnyLength) {
    const std::string path = "src/\xFF\\303'/" + std::string(9000, 'p') + ".ts";
    const std::string name = "N\xC3\x84me\\" + std::string(9000, 'n');
    add<FileRow>({{.id = 1, .path = "src/"}, {.id = 2, .path = path, .language = "typescript"}});
    add<DeclarationRow>({{1, 2, name, "x." + name, "class", true, 1, 9'999'999'999, 3}});
    copy_index(SqliteIndex(index), *repository());
    const std::unique_ptr<IndexConnection> connection = repository()->connect();
    const std::unique_ptr<storage::Database> db = connection->read();
    const std::vector<std::string> paths{path, "src/", path, "src"};
    std::vector<std::string> found;
    const auto note = [&](const FileRow& row) { found.emplace_back(row.path); };
    db->read_files_at(paths, note);
    db->read_files_below("src/\xFF\\303'", note);
    EXPECT_EQ(found, (std::vector<std::string>{path, "src/", path}));
    std::vector<std::string> names;
    for (const std::string& part : {name, std::string("n\xC3\x84ME\\n"), std::string("\x84")}) {
        db->read_names(part, [&](const NameRow& row) { names.emplace_back(row.name); });
    }
    db->read_declarations_named(name, [&](const DeclarationRow& row) { names.emplace_back(row.fqn.substr(2)); });
    EXPECT_EQ(names, std::vector<std::string>(4, name));
}

TEST_F(Server, ShowsNoControlCharacterAndTakesNoRepositoryNamedWithOne) {
    import(3);
    Connection(database).execute("UPDATE wiki_scope.files SET path = '\\x611b0a2e7473';"
                                 "INSERT INTO wiki_scope.repositories(name, snapshot) VALUES(E'\\x1B\\nsay', 1)");
    const std::string of = " --index postgresql:///tested --repository ";
    EXPECT_EQ(run("page a\uFFFD\uFFFD.ts --only seeds --checkout ." + of + "one").out.substr(0, 8), "## Seeds");
    expect_failure("files" + of + "two", "(there are \uFFFD\uFFFDsay, one)");
    expect_failure("import in.scip" + of + "'\n'", "\\x0a: a name with control characters; give another with");
}

TEST_F(Server, FindsEachOfManyNamesOnce) {
    constexpr RowId MANY = 300;
    const std::unique_ptr<NewIndex> made = repository()->replace();
    made->claim("");
    for (RowId id = 1; id <= MANY; ++id) {
        made->rows().add(DeclarationRow{id, 1, "name" + std::to_string(id), "", "", true, 1, 1, 1});
    }
    made->complete({.declarations = MANY});
    made->commit();
    std::multiset<RowId> found;
    const std::unique_ptr<IndexConnection> connection = repository()->connect();
    connection->read()->read_names("AME", [&](const NameRow& row) { found.insert(row.declaration); });
    std::vector<RowId> all(MANY);
    std::iota(all.begin(), all.end(), 1);
    EXPECT_TRUE(std::ranges::equal(found, all));
}

TEST_F(Server, ItsTablesMayBePartitionedByRepository) {
    Connection connection(database);
    connection.execute(R"sql(
        ALTER TABLE wiki_scope.edges RENAME TO whole;
        CREATE TABLE wiki_scope.edges(LIKE wiki_scope.whole INCLUDING ALL) PARTITION BY HASH(repository);
        CREATE TABLE wiki_scope.edges_0 PARTITION OF wiki_scope.edges FOR VALUES WITH (MODULUS 2, REMAINDER 0);
        CREATE TABLE wiki_scope.edges_1 PARTITION OF wiki_scope.edges FOR VALUES WITH (MODULUS 2, REMAINDER 1);
        DROP TABLE wiki_scope.whole;
        ALTER TABLE wiki_scope.symbols RENAME TO whole;
        CREATE TABLE wiki_scope.symbols(LIKE wiki_scope.whole INCLUDING ALL) PARTITION BY HASH(repository);
        CREATE TABLE wiki_scope.symbols_0 PARTITION OF wiki_scope.symbols FOR VALUES WITH (MODULUS 2, REMAINDER 0);
        CREATE TABLE wiki_scope.symbols_1 PARTITION OF wiki_scope.symbols FOR VALUES WITH (MODULUS 2, REMAINDER 1);
        DROP TABLE wiki_scope.whole
    )sql");
    for (const std::string name : {"one", "two", "three", "four"}) {
        import(3, name);
        import(6, name);
        EXPECT_EQ(lines(name), 6);
    }
    EXPECT_EQ(number(connection, "SELECT count(*) FROM wiki_scope.symbols"), 4);
    EXPECT_GT(number(connection, "SELECT count(*) FROM wiki_scope.symbols_0"), 0);
}

}  // namespace
}  // namespace host::postgresql
