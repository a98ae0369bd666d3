// What loading a page and importing an index cost, beside what SQLite and protozero cost for the same rows and bytes:
// load_bench INDEX.scip

#include "bench/generated_page.h"
#include "bench/medians.h"
#include "embedded/database.h"
#include "embedded/index.h"
#include "embedded/scip/import.h"
#include "tests/embedded/temporary_folder.h"

#include <benchmark/benchmark.h>
#include <protozero/pbf_reader.hpp>
#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

using bench::Medians;
using embedded::Connection;
using embedded::Statement;
using embedded::TemporaryFolder;
using embedded::scip::import_scip;
using models::Text;
using wiki::scope::ScopeFacts;

// Writes an index that gives the facts of a generated page back, among `others` edges that have nothing to do with it.
class IndexWriter {
  public:
    // `connection` has the schema and an open transaction.
    explicit IndexWriter(const Connection& connection) : connection_(connection) {}

    void write(const ScopeFacts& facts, int others) {
        connection_.execute("INSERT INTO languages VALUES('typescript', 1)");
        Statement symbol(connection_, "INSERT OR IGNORE INTO symbols VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)");
        Statement edge(connection_, "INSERT INTO edges VALUES(?1, ?2, ?3, ?4)");
        std::vector<std::int64_t> elsewhere;
        for (const auto& file : facts.files) {
            id_of(file.path);
        }
        for (const auto& declaration : facts.symbols) {
            insert(symbol, declaration);
        }
        for (const auto& reference : facts.inbound) {
            insert(edge, id_of(reference.source_path), reference.target_id, reference.resolution, reference.refs);
        }
        for (const auto& reference : facts.outbound) {
            insert(symbol, reference.target);
            elsewhere.push_back(reference.target.id);
            insert(edge, id_of(reference.source_path), reference.target.id, reference.resolution, reference.refs);
        }
        std::mt19937 random(1);
        const std::int64_t outsider = id_of("outside/of/the/page.ts");
        for (int i = 0; i < others; ++i) {
            insert(edge, outsider, elsewhere[random() % elsewhere.size()], "import", 1);
        }
    }

  private:
    std::int64_t id_of(const Text& path) {
        const auto [id, is_new] = file_ids_.find_or_add(path);
        if (is_new) {
            id = static_cast<std::int64_t>(file_ids_.size());
            file_.bind(1, id);
            file_.bind(2, path);
            file_.run();
        }
        return id;
    }

    void insert(Statement& row, const storage::ScopeSymbol& symbol) {
        row.bind(1, symbol.id);
        row.bind(2, id_of(symbol.path));
        row.bind(3, symbol.name);
        row.bind(4, symbol.fqn);
        row.bind(5, symbol.kind);
        row.bind(6, std::int64_t{symbol.is_export ? 1 : 0});
        row.bind(7, std::int64_t{symbol.start_line});
        row.bind(8, std::int64_t{symbol.end_line});
        row.run();
    }

    static void insert(Statement& row, std::int64_t source, std::int64_t target, std::string_view resolution,
                       std::int64_t refs) {
        row.bind(1, source);
        row.bind(2, target);
        row.bind(3, resolution);
        row.bind(4, refs);
        row.run();
    }

    const Connection& connection_;
    Statement file_{connection_, "INSERT INTO files(id, path, language) VALUES(?1, ?2, 'typescript')"};
    wiki::scope::OrderedMap<Text, std::int64_t> file_ids_;
};

Connection new_database(const std::string& path) {
    Connection connection(path, Connection::Mode::CREATE);
    connection.execute("PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY");
    return connection;
}

std::vector<std::string> paths_of(const ScopeFacts& facts) {
    std::vector<std::string> paths;
    for (const auto& file : facts.files) {
        paths.emplace_back(file.path);
    }
    return paths;
}

ScopeFacts load(storage::Database& db, const std::vector<std::string>& paths) {
    return wiki::scope::load_scope_facts(db, paths, [](const Text&) { return std::nullopt; });
}

// The statements of one load, with their parameters written into them.
std::vector<std::string> statements_of_load(storage::Database& db, const std::vector<std::string>& paths) {
    std::vector<std::string> statements;
    const auto note = [](unsigned, void* noted, void* statement, void*) {
        char* const sql = sqlite3_expanded_sql(static_cast<sqlite3_stmt*>(statement));
        static_cast<std::vector<std::string>*>(noted)->emplace_back(sql);
        sqlite3_free(sql);
        return 0;
    };
    sqlite3_trace_v2(db.connection().handle(), SQLITE_TRACE_STMT, note, &statements);
    load(db, paths);
    sqlite3_trace_v2(db.connection().handle(), 0, nullptr, nullptr);
    return statements;
}

// Steps every row of the statements and reads every column.
void bare_load(const storage::Database& db, const std::vector<std::string>& statements) {
    std::size_t read = 0;
    for (const std::string& sql : statements) {
        Statement rows(db.connection(), sql);
        const int columns = rows.column_count();
        while (rows.step()) {
            for (int column = 0; column < columns; ++column) {
                read += rows.text(column).size();
            }
        }
    }
    benchmark::DoNotOptimize(read);
}

void print_load(const TemporaryFolder& folder) {
    constexpr int REPETITIONS = 3;
    constexpr int OTHER_EDGES = 500'000;
    std::vector<std::string> large_page;
    std::vector<std::string> small_page;
    {
        const ScopeFacts large = bench::generated_page(bench::LARGE);
        large_page = paths_of(large);
        small_page.assign(large_page.end() - 12, large_page.end());
        const Connection connection = new_database(folder / "large.db");
        embedded::Transaction transaction(connection);
        create_schema(connection);
        IndexWriter(connection).write(large, OTHER_EDGES);
        create_indexes(connection);
        transaction.commit();
    }
    storage::Database db(embedded::open_index(folder / "large.db"));
    const std::vector<std::string> large_statements = statements_of_load(db, large_page);
    const std::vector<std::string> small_statements = statements_of_load(db, small_page);
    const ScopeFacts small = load(db, small_page);

    Medians medians;
    medians.add(
        "large", [&] { benchmark::DoNotOptimize(load(db, large_page).inbound.data()); }, REPETITIONS);
    medians.add(
        "large bare", [&] { bare_load(db, large_statements); }, REPETITIONS);
    medians.add(
        "small", [&] { benchmark::DoNotOptimize(load(db, small_page).inbound.data()); }, REPETITIONS);
    medians.add(
        "small bare", [&] { bare_load(db, small_statements); }, REPETITIONS);
    medians.run();
    std::printf(
        "\n`load_scope_facts` over a bare SQLite loop (to reach: 2): large page %.2f; a page of 12 files, %zu "
        "declarations and %zu references, out of an index of 2 million edges: %.2f, and %.4f of the large page\n",
        medians.of("large") / medians.of("large bare"), small.symbols.size(),
        small.inbound.size() + small.outbound.size(), medians.of("small") / medians.of("small bare"),
        medians.of("small") / medians.of("large"));
}

// Touches every occurrence of a SCIP file and nothing else.
void walk(const std::string& bytes) {
    constexpr protozero::pbf_tag_type DOCUMENTS = 2;
    constexpr protozero::pbf_tag_type OCCURRENCES = 2;
    constexpr protozero::pbf_tag_type SYMBOL = 2;
    std::size_t touched = 0;
    protozero::pbf_reader index(bytes);
    while (index.next(DOCUMENTS)) {
        protozero::pbf_reader document = index.get_message();
        while (document.next(OCCURRENCES)) {
            protozero::pbf_reader occurrence = document.get_message();
            while (occurrence.next()) {
                if (occurrence.tag() == SYMBOL) {
                    touched += occurrence.get_view().size();
                } else {
                    occurrence.skip();
                    ++touched;
                }
            }
        }
    }
    benchmark::DoNotOptimize(touched);
}

// The rows of a table of an index, for being inserted elsewhere.
struct Table {
    std::string insert;
    int columns;
    std::vector<std::string> values;  // row by row
};

std::vector<Table> tables_of(const std::string& index) {
    const Connection connection = embedded::open_index(index);
    std::vector<Table> tables;
    for (const std::string name : {"files", "languages", "symbols", "edges"}) {
        Statement rows(connection, "SELECT * FROM " + name);
        Table table{"INSERT INTO " + name + " VALUES(?", rows.column_count(), {}};
        for (int column = 1; column < table.columns; ++column) {
            table.insert += ", ?";
        }
        table.insert += ")";
        while (rows.step()) {
            for (int column = 0; column < table.columns; ++column) {
                table.values.emplace_back(rows.text(column));
            }
        }
        tables.push_back(table);
    }
    return tables;
}

void insert_all(const std::string& path, const std::vector<Table>& tables) {
    std::filesystem::remove(path);
    const Connection connection = new_database(path);
    embedded::Transaction transaction(connection);
    create_schema(connection);
    for (const Table& table : tables) {
        Statement insert(connection, table.insert);
        for (std::size_t value = 0; value < table.values.size();) {
            for (int column = 1; column <= table.columns; ++column) {
                insert.bind(column, table.values[value++]);
            }
            insert.run();
        }
    }
    create_indexes(connection);
    transaction.commit();
}

void print_import(const TemporaryFolder& folder, const std::string& scip) {
    constexpr int REPETITIONS = 9;
    std::ifstream file(scip, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const std::string index = folder / "imported.db";
    std::filesystem::create_directory(folder / "empty");
    const embedded::scip::ImportRequest without_sources{scip, index, folder / "empty"};
    const embedded::scip::ImportReport counts = import_scip(without_sources, {});
    const std::vector<Table> tables = tables_of(index);

    Medians medians;
    medians.add(
        "import", [&] { import_scip(without_sources, {}); }, REPETITIONS);
    medians.add(
        "import with sources",
        [&] {
            import_scip({scip, index, std::nullopt}, {});
        },
        REPETITIONS);
    medians.add(
        "walk", [&] { walk(bytes); }, REPETITIONS);
    medians.add(
        "insertion", [&] { insert_all(folder / "inserted.db", tables); }, REPETITIONS);
    medians.run();
    const double import = medians.of("import");
    const double walked = medians.of("walk");
    const double inserted = medians.of("insertion");
    std::printf(
        "Import of %s (%zu bytes, %lld declarations, %lld edges): %.1f times a bare walk and insertion together; "
        "less the insertion, %.1f times the walk (to reach: 6); with its sources it takes %.1f times as long\n",
        scip.c_str(), bytes.size(), static_cast<long long>(counts.declarations), static_cast<long long>(counts.edges),
        import / (walked + inserted), (import - inserted) / walked, medians.of("import with sources") / import);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: load_bench INDEX.scip\n", stderr);
        return 2;
    }
    try {
        bench::Medians::start();
        const TemporaryFolder folder;
        print_load(folder);
        print_import(folder, argv[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "load_bench: %s\n", error.what());
        return 1;
    }
}
