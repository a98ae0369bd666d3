#include "host/sqlite/sqlite_database.h"

#include "host/sqlite/bound_list.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace host {

namespace {

// The statements join in the written order (CROSS JOIN), whether or not the index was analysed.

const std::string FILES = "SELECT file.id, file.path, file.language, file.content_hash, file.declarations, "
                          "file.declared_lines FROM ";

// Of files whose path is a blob or holds a NUL nobody can ask: a text of `bound_list` ends at a NUL.
const std::string IS_NAMED = "typeof(file.path) = 'text' AND instr(file.path, char(0)) = 0";

const std::string DECLARATIONS = "SELECT symbol.id, symbol.file_id, symbol.name, symbol.fqn, symbol.kind, "
                                 "symbol.is_export, symbol.start_line, symbol.end_line, symbol.uses FROM ";

const std::string EDGES =
    "SELECT edge.source_file_id, edge.target_id, edge.resolution_id, edge.refs, edge.first_line FROM ";

// Rows whose integer in a column lies in one of the ranges that are bound to ?1.
std::string in_ranges(const std::string& table, const std::string& column) {
    return "json_each(?1) AS range CROSS JOIN " + table + " ON " + column +
           " BETWEEN range.value ->> 0 AND range.value ->> 1";
}

std::optional<std::string_view> text_if_any(const Statement& row, int column) {
    return row.is_null(column) ? std::nullopt : std::optional(row.text(column));
}

void take_files(Statement& rows, const OnRow<FileRow>& on_row) {
    while (rows.step()) {
        on_row({.id = rows.integer(0),
                .path = rows.text(1),
                .language = text_if_any(rows, 2),
                .content_hash = rows.is_null(3) ? std::nullopt : std::optional(rows.integer(3)),
                .declarations = rows.integer(4),
                .declared_lines = rows.integer(5)});
    }
}

void take_declarations(Statement& rows, const OnRow<DeclarationRow>& on_row) {
    while (rows.step()) {
        on_row({.id = rows.integer(0),
                .file = rows.integer(1),
                .name = rows.text(2),
                .fqn = rows.text(3),
                .kind = rows.text(4),
                .is_export = rows.integer(5) != 0,
                .first_line = rows.integer(6),
                .last_line = rows.integer(7),
                .uses = rows.integer(8)});
    }
}

void take_edges(Statement& rows, const OnRow<EdgeRow>& on_row) {
    while (rows.step()) {
        on_row({rows.integer(0), rows.integer(1), rows.integer(2), rows.integer(3), rows.integer(4)});
    }
}

}  // namespace

std::string SqliteDatabase::noted(std::string_view key) {
    Statement value(connection_, "SELECT value FROM meta WHERE key = ?1");
    value.bind(1, key);
    return value.step() ? std::string(value.text(0)) : "";
}

void SqliteDatabase::check() {
    Statement findings(connection_, "PRAGMA integrity_check(1)");
    findings.step();
    const std::string_view finding = findings.text(0);
    if (finding != "ok") {
        const std::string_view last_line = finding.substr(finding.rfind('\n') + 1);  // of which the others are headings
        throw SqliteError(connection_.path(), "damaged: " + std::string(last_line), SQLITE_CORRUPT);
    }
}

std::int64_t SqliteDatabase::count_files(std::int64_t most) {
    Statement count(connection_, "SELECT count(*) FROM (SELECT 1 FROM files LIMIT ?1)");
    count.bind(1, most);
    count.step();
    return count.integer(0);
}

void SqliteDatabase::read_files_at(std::span<const std::string> paths, const OnRow<FileRow>& on_row) {
    std::vector<std::string> names(paths.begin(), paths.end());
    std::erase_if(names, [](const std::string& path) { return path.find('\0') != std::string::npos; });
    Statement rows(connection_, "WITH page(path, place) AS "
                                "(SELECT value, min(key) FROM json_each(?1) GROUP BY value) " +
                                    FILES + "page CROSS JOIN files AS file ON file.path = page.path AND " + IS_NAMED +
                                    " ORDER BY page.place");
    rows.bind(1, bound_list(std::span<const std::string>(names)));
    take_files(rows, on_row);
}

void SqliteDatabase::read_files_below(std::string_view folder, const OnRow<FileRow>& on_row) {
    // Every path that begins with "folder/" comes before "folder0": "0" is the character after "/".
    const std::string is_below = folder.empty() ? "" : "file.path > ?1 AND file.path < ?2 AND ";
    Statement rows(connection_, FILES + "files AS file WHERE " + is_below + IS_NAMED + " ORDER BY file.path");
    if (!folder.empty()) {
        rows.bind(1, std::string(folder) + "/");
        rows.bind(2, std::string(folder) + "0");
    }
    take_files(rows, on_row);
}

void SqliteDatabase::read_files(std::vector<RowId> ids, const OnRow<FileRow>& on_row) {
    Statement rows(connection_, FILES + in_ranges("files AS file", "file.id"));
    rows.bind(1, bound_ranges(std::move(ids)));
    take_files(rows, on_row);
}

void SqliteDatabase::read_declarations_in(std::vector<RowId> files, const OnRow<DeclarationRow>& on_row) {
    Statement rows(connection_, DECLARATIONS + in_ranges("symbols AS symbol", "symbol.file_id"));
    rows.bind(1, bound_ranges(std::move(files)));
    take_declarations(rows, on_row);
}

void SqliteDatabase::read_declarations(std::vector<RowId> ids, const OnRow<DeclarationRow>& on_row) {
    Statement rows(connection_, DECLARATIONS + in_ranges("symbols AS symbol", "symbol.id"));
    rows.bind(1, bound_ranges(std::move(ids)));
    take_declarations(rows, on_row);
}

void SqliteDatabase::read_declarations_named(std::string_view name, const OnRow<DeclarationRow>& on_row) {
    Statement rows(connection_, DECLARATIONS + "symbols AS symbol WHERE symbol.name = ?1");
    rows.bind(1, name);
    take_declarations(rows, on_row);
}

// All of them: who looks through a covering index is as fast as SQLite would be.
void SqliteDatabase::read_names(std::string_view /*part*/, const OnRow<NameRow>& on_row) {
    Statement rows(connection_, "SELECT id, name, uses FROM symbols INDEXED BY symbols_by_name");
    while (rows.step()) {
        on_row({.declaration = rows.integer(0), .name = rows.text(1), .uses = rows.integer(2)});
    }
}

void SqliteDatabase::read_descriptions(std::vector<RowId> declarations, const OnRow<DescriptionRow>& on_row) {
    Statement rows(connection_,
                   "SELECT symbol_id, signature, documentation FROM " + in_ranges("descriptions", "symbol_id"));
    rows.bind(1, bound_ranges(std::move(declarations)));
    while (rows.step()) {
        on_row({.declaration = rows.integer(0), .signature = rows.text(1), .documentation = rows.text(2)});
    }
}

void SqliteDatabase::read_resolutions(const OnRow<ResolutionRow>& on_row) {
    Statement rows(connection_, "SELECT id, name FROM resolutions");
    while (rows.step()) {
        on_row({.id = rows.integer(0), .name = rows.text(1)});
    }
}

void SqliteDatabase::read_resolved_languages(std::span<const models::Text> names,
                                             const OnRow<std::string_view>& on_row) {
    Statement rows(connection_, R"sql(
        SELECT language.name
        FROM json_each(?1) AS page CROSS JOIN languages AS language ON language.name = page.value
        WHERE language.import_resolved
    )sql");
    rows.bind(1, bound_list(names));
    while (rows.step()) {
        on_row(rows.text(0));
    }
}

void SqliteDatabase::read_edges_into(std::vector<RowId> declarations, const OnRow<EdgeRow>& on_row) {
    Statement rows(connection_, EDGES + in_ranges("edges AS edge INDEXED BY edges_by_target", "edge.target_id"));
    rows.bind(1, bound_ranges(std::move(declarations)));
    take_edges(rows, on_row);
}

void SqliteDatabase::read_edges_out_of(std::vector<RowId> files, const OnRow<EdgeRow>& on_row) {
    Statement rows(connection_, EDGES + in_ranges("edges AS edge", "edge.source_file_id"));
    rows.bind(1, bound_ranges(std::move(files)));
    take_edges(rows, on_row);
}

}  // namespace host
