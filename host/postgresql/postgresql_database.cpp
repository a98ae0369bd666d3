#include "host/postgresql/postgresql_database.h"

#include "host/index/ranges.h"
#include "host/postgresql/name_block.h"
#include "host/postgresql/schema.h"
#include "host/postgresql/snapshot_tables.h"
#include "host/postgresql/table_checksum.h"
#include "host/text/ascii.h"
#include "host/text/control_characters.h"

#include <unordered_set>
#include <utility>

namespace host::postgresql {

namespace {

// The planner may know nothing yet of a snapshot that was copied a moment ago, and then takes all plans for equally
// cheap. So nothing is left to its estimates: rows are asked for range by range, and in the order of the index that is
// made for it, since no other has them in that order and nothing may be sorted where it can be helped.
constexpr const char* PLANS = R"sql(
    SET LOCAL enable_sort = off;
    SET LOCAL enable_seqscan = off;
    SET LOCAL enable_bitmapscan = off;
    SET LOCAL enable_memoize = off;
    SET LOCAL jit = off
)sql";

// A condition that the rows of a table are those of the snapshot.
std::string of_snapshot(const std::string& table) {
    return table + ".repository = $1 AND " + table + ".snapshot = $2";
}

// The rows of a table whose key, an expression, lies between two others, in the order of the key.
std::string between(const std::string& table, const std::string& key, const std::string& first,
                    const std::string& last) {
    return "(SELECT * FROM wiki_scope." + table + " AS " + table + " WHERE " + of_snapshot(table) + " AND " + key +
           " BETWEEN " + first + " AND " + last + " ORDER BY " + key + ") AS " + table + " ";
}

// Rows whose integer in a column lies in one of the ranges that are bound to $3 and $4.
std::string in_ranges(const std::string& table, const std::string& column) {
    return "FROM ROWS FROM(pg_catalog.unnest($3::bigint[]), pg_catalog.unnest($4::bigint[])) AS range(first, last) "
           "CROSS JOIN LATERAL " +
           between(table, column, "range.first", "range.last");
}

// What paths and names are indexed by.
std::string start_of_path(const std::string& path) {
    return "substring(" + path + " FROM 1 FOR 500)";
}
std::string start_of_name(const std::string& name) {
    return "substring(" + name + " FROM 1 FOR 200)";
}

const std::string FILES = "SELECT files.id, files.path, files.language, files.content_hash, files.declarations, "
                          "files.declared_lines ";

const std::string DECLARATIONS = "SELECT symbols.id, symbols.file_id, symbols.name, symbols.fqn, symbols.kind, "
                                 "symbols.is_export, symbols.start_line, symbols.end_line, symbols.uses ";

const std::string EDGES =
    "SELECT edges.source_file_id, edges.target_id, edges.resolution_id, edges.refs, edges.first_line ";

void take_files(Rows& rows, const OnRow<FileRow>& on_row) {
    while (rows.step()) {
        on_row({.id = rows.integer(0),
                .path = rows.bytes(1),
                .language = rows.is_null(2) ? std::nullopt : std::optional(rows.bytes(2)),
                .content_hash = rows.is_null(3) ? std::nullopt : std::optional(rows.integer(3)),
                .declarations = rows.integer(4),
                .declared_lines = rows.integer(5)});
    }
}

void take_declarations(Rows& rows, const OnRow<DeclarationRow>& on_row) {
    while (rows.step()) {
        on_row({.id = rows.integer(0),
                .file = rows.integer(1),
                .name = rows.bytes(2),
                .fqn = rows.bytes(3),
                .kind = rows.bytes(4),
                .is_export = rows.integer(5) != 0,
                .first_line = rows.integer(6),
                .last_line = rows.integer(7),
                .uses = rows.integer(8)});
    }
}

void take_edges(Rows& rows, const OnRow<EdgeRow>& on_row) {
    while (rows.step()) {
        on_row({rows.integer(0), rows.integer(1), rows.integer(2), rows.integer(3), rows.integer(4)});
    }
}

}  // namespace

PostgresqlDatabase::Transaction::Transaction(Connection& of) : connection(of) {
    connection.begin("ISOLATION LEVEL REPEATABLE READ READ ONLY", PLANS);
}

PostgresqlDatabase::Transaction::~Transaction() {
    try {
        if (!connection.is_lost()) {
            connection.execute("COMMIT");
        }
    } catch (...) {  // the connection is lost then, and with it the transaction
    }
}

PostgresqlDatabase::PostgresqlDatabase(Connection& connection, std::string repository)
    : connection_(connection), repository_(std::move(repository)), transaction_(connection) {
    require_schema(connection_);
    find_snapshot();
}

Parameters PostgresqlDatabase::key_and_ranges(std::vector<std::int64_t> integers) const {
    std::vector<std::int64_t> firsts;
    std::vector<std::int64_t> lasts;
    const auto ranges = ranges_of(std::move(integers));
    for (const auto& [first, last] : ranges) {
        firsts.push_back(first);
        lasts.push_back(last);
    }
    return key().integers(firsts).integers(lasts);
}

void PostgresqlDatabase::find_snapshot() {
    Rows row(
        connection_,
        "SELECT repository, snapshot, bytes, checksums IS NOT NULL, "
        "pg_catalog.convert_to(pg_catalog.to_char(made AT TIME ZONE 'UTC', 'YYYY-MM-DD\"T\"HH24:MI:SS\"Z\"'), 'UTF8') "
        "FROM wiki_scope.repositories WHERE name = $1 AND snapshot > 0",
        Parameters().text(repository_));
    if (row.step()) {
        repository_id_ = row.integer(0);
        snapshot_ = row.integer(1);
        origin_.bytes = row.integer(2);
        origin_.has_checksums = row.integer(3) != 0;
        origin_.made = row.bytes(4);
        origin_.state = std::to_string(snapshot_) + " of " + origin_.made;
        row.step();
    }
    if (snapshot_ == 0) {
        throw UnusableIndex(UnusableIndex::Fault::MISSING, connection_.server(),
                            "no index of a repository called " + repository_ + known_repositories());
    }
}

// A few names that may have been meant.
std::string PostgresqlDatabase::known_repositories() {
    constexpr int MOST = 10;
    std::string names;
    Rows rows(connection_,
              "SELECT pg_catalog.convert_to(name, 'UTF8') FROM wiki_scope.repositories WHERE snapshot > 0 "
              "ORDER BY name LIMIT $1",
              Parameters().integer(MOST + 1));
    for (int count = 0; rows.step(); ++count) {
        names.append(count == 0 ? " (there are " : ", ")
            .append(count < MOST ? without_control_characters(rows.bytes(0)) : "...");
    }
    return names.empty() ? "" : names + ")";
}

std::string PostgresqlDatabase::noted(std::string_view key) {
    Rows rows(connection_, "SELECT value FROM wiki_scope.notes WHERE " + of_snapshot("notes") + " AND key = $3",
              this->key().bytes(key));
    std::string value;
    while (rows.step()) {
        value = rows.bytes(0);
    }
    return value;
}

std::vector<std::int64_t> PostgresqlDatabase::stated_checksums() {
    Rows rows(connection_, "SELECT pg_catalog.unnest(checksums) FROM wiki_scope.repositories WHERE repository = $1",
              Parameters().integer(repository_id_));
    std::vector<std::int64_t> checksums;
    while (rows.step()) {
        checksums.push_back(rows.integer(0));
    }
    return checksums;
}

PostgresqlError PostgresqlDatabase::damaged(std::string_view table) const {
    constexpr const char* DATA_CORRUPTED = "XX001";
    return {name(), "the rows of wiki_scope." + std::string(table) + " are not those of the import", DATA_CORRUPTED};
}

void PostgresqlDatabase::check() {
    const std::vector<std::int64_t> stated = stated_checksums();
    for (std::size_t place = 0; place < SNAPSHOT_TABLES.size(); ++place) {
        const SnapshotTable& table = SNAPSHOT_TABLES.at(place);
        const std::int64_t stored = stored_checksum(connection_, table, key());
        if (origin_.has_checksums && (place >= stated.size() || stored != stated[place])) {
            throw damaged(table.name);
        }
    }
}

std::int64_t PostgresqlDatabase::count_files(std::int64_t most) {
    Rows rows(connection_,
              "SELECT pg_catalog.count(*) FROM (SELECT FROM wiki_scope.files WHERE " + of_snapshot("files") +
                  " LIMIT $3) AS first_files",
              key().integer(most));
    std::int64_t count = 0;
    while (rows.step()) {
        count = rows.integer(0);
    }
    return count;
}

void PostgresqlDatabase::read_files_at(std::span<const std::string> paths, const OnRow<FileRow>& on_row) {
    std::unordered_set<std::string_view> known;
    std::vector<std::string_view> once;
    for (const std::string& path : paths) {
        if (known.insert(path).second) {
            once.emplace_back(path);
        }
    }
    const std::string start = start_of_path("page.path");
    Rows rows(connection_,
              FILES + "FROM pg_catalog.unnest($3::bytea[]) WITH ORDINALITY AS page(path, place) CROSS JOIN LATERAL " +
                  between("files", start_of_path("path"), start, start) +
                  "WHERE files.path = page.path ORDER BY page.place",
              key().bytes_list(once));
    take_files(rows, on_row);
}

void PostgresqlDatabase::read_files_below(std::string_view folder, const OnRow<FileRow>& on_row) {
    // Every path that begins with "folder/" comes before "folder0": "0" is the character after "/".
    const std::string start = start_of_path("files.path");
    const std::string is_below = " AND " + start + " BETWEEN " + start_of_path("$3") + " AND " + start_of_path("$4") +
                                 " AND files.path > $3 AND files.path < $4";
    Parameters parameters = key();
    if (!folder.empty()) {
        parameters.bytes(std::string(folder) + "/").bytes(std::string(folder) + "0");
    }
    Rows rows(connection_,
              FILES + "FROM wiki_scope.files AS files WHERE " + of_snapshot("files") +
                  (folder.empty() ? "" : is_below) + " ORDER BY " + start + ", files.path",
              parameters);
    take_files(rows, on_row);
}

void PostgresqlDatabase::read_files(std::vector<RowId> ids, const OnRow<FileRow>& on_row) {
    Rows rows(connection_, FILES + in_ranges("files", "id"), key_and_ranges(std::move(ids)));
    take_files(rows, on_row);
}

void PostgresqlDatabase::read_declarations_in(std::vector<RowId> files, const OnRow<DeclarationRow>& on_row) {
    Rows rows(connection_, DECLARATIONS + in_ranges("symbols", "file_id"), key_and_ranges(std::move(files)));
    take_declarations(rows, on_row);
}

void PostgresqlDatabase::read_declarations(std::vector<RowId> ids, const OnRow<DeclarationRow>& on_row) {
    Rows rows(connection_, DECLARATIONS + in_ranges("symbols", "id"), key_and_ranges(std::move(ids)));
    take_declarations(rows, on_row);
}

void PostgresqlDatabase::read_declarations_named(std::string_view name, const OnRow<DeclarationRow>& on_row) {
    const std::string start = start_of_name("$3");
    Rows rows(connection_,
              DECLARATIONS + "FROM " + between("symbols", start_of_name("name"), start, start) +
                  "WHERE symbols.name = $3",
              key().bytes(name));
    take_declarations(rows, on_row);
}

void PostgresqlDatabase::read_names(std::string_view part, const OnRow<NameRow>& on_row) {
    Rows blocks(connection_,
                "SELECT rows FROM wiki_scope.names AS names WHERE " + of_snapshot("names") +
                    " AND position($3 IN lowered) > 0",
                key().bytes(lowered(part)));
    while (blocks.step()) {
        if (!postgresql::read_names(blocks.bytes(0), on_row)) {
            throw damaged("names");
        }
    }
}

void PostgresqlDatabase::read_descriptions(std::vector<RowId> declarations, const OnRow<DescriptionRow>& on_row) {
    Rows rows(connection_, "SELECT symbol_id, signature, documentation " + in_ranges("descriptions", "symbol_id"),
              key_and_ranges(std::move(declarations)));
    while (rows.step()) {
        on_row({.declaration = rows.integer(0), .signature = rows.bytes(1), .documentation = rows.bytes(2)});
    }
}

void PostgresqlDatabase::read_resolutions(const OnRow<ResolutionRow>& on_row) {
    Rows rows(connection_,
              "SELECT id, name FROM wiki_scope.resolutions AS resolutions WHERE " + of_snapshot("resolutions"), key());
    while (rows.step()) {
        on_row({.id = rows.integer(0), .name = rows.bytes(1)});
    }
}

void PostgresqlDatabase::read_resolved_languages(std::span<const models::Text> names,
                                                 const OnRow<std::string_view>& on_row) {
    Rows rows(connection_,
              "SELECT name FROM wiki_scope.languages AS languages WHERE " + of_snapshot("languages") +
                  " AND name = ANY($3) AND import_resolved",
              key().bytes_list(std::vector<std::string_view>(names.begin(), names.end())));
    while (rows.step()) {
        on_row(rows.bytes(0));
    }
}

void PostgresqlDatabase::read_edges_into(std::vector<RowId> declarations, const OnRow<EdgeRow>& on_row) {
    Rows rows(connection_, EDGES + in_ranges("edges", "target_id"), key_and_ranges(std::move(declarations)));
    take_edges(rows, on_row);
}

void PostgresqlDatabase::read_edges_out_of(std::vector<RowId> files, const OnRow<EdgeRow>& on_row) {
    Rows rows(connection_, EDGES + in_ranges("edges", "source_file_id"), key_and_ranges(std::move(files)));
    take_edges(rows, on_row);
}

}  // namespace host::postgresql
