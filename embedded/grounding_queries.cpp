#include "storage/grounding_queries.h"

#include "embedded/bound_list.h"
#include "embedded/database.h"
#include "workers/wiki/scope/ordered_map.h"

#include <algorithm>
#include <limits>

namespace storage {

namespace {

using embedded::bound_list;
using embedded::Statement;

// An index may hold any integer as a line; the nearest line that a record can hold stands for it.
std::int32_t line(std::int64_t stored) {
    using Line = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(stored, Line::min(), Line::max()));
}

// The columns `id, path, name, kind, is_export, start_line, end_line, fqn` of a row, from the column `first` on.
ScopeSymbol symbol(Database& db, const Statement& row, int first) {
    return {.id = row.integer(first),
            .path = db.text(row.text(first + 1)),
            .name = db.text(row.text(first + 2)),
            .kind = db.text(row.text(first + 3)),
            .is_export = row.integer(first + 4) != 0,
            .start_line = line(row.integer(first + 5)),
            .end_line = line(row.integer(first + 6)),
            .fqn = db.text(row.text(first + 7))};
}

}  // namespace

// The statements join in the written order (CROSS JOIN), from the few rows of the page to what refers to them, so
// that their cost is that of the page, whatever the index holds and whether or not it was analysed.

std::vector<ScopeFile> scope_files(Database& db, std::span<const std::string> paths) {
    Statement rows(db.connection(), R"sql(
        WITH page(path, place) AS (SELECT value, min(key) FROM json_each(?1) GROUP BY value)
        SELECT file.id, file.path, file.language
        FROM page CROSS JOIN files AS file ON file.path = page.path
        ORDER BY page.place
    )sql");
    rows.bind(1, bound_list(paths));
    std::vector<ScopeFile> files;
    while (rows.step()) {
        files.push_back({.id = rows.integer(0), .path = db.text(rows.text(1)), .language = std::nullopt});
        if (!rows.is_null(2)) {
            files.back().language = db.text(rows.text(2));
        }
    }
    return files;
}

std::vector<ScopeSymbol> scope_symbols(Database& db, std::span<const FileId> file_ids) {
    Statement rows(db.connection(), R"sql(
        WITH page(file_id, place) AS (SELECT value, min(key) FROM json_each(?1) GROUP BY value)
        SELECT symbol.id, file.path, symbol.name, symbol.kind, symbol.is_export, symbol.start_line,
               symbol.end_line, symbol.fqn
        FROM page CROSS JOIN files AS file ON file.id = page.file_id
                  CROSS JOIN symbols AS symbol ON symbol.file_id = page.file_id
        ORDER BY page.place, coalesce(symbol.start_line, 0), symbol.id
    )sql");
    rows.bind(1, bound_list(file_ids));
    std::vector<ScopeSymbol> symbols;
    while (rows.step()) {
        symbols.push_back(symbol(db, rows, 0));
    }
    symbols.shrink_to_fit();
    return symbols;
}

std::vector<InboundReference> inbound_references(Database& db, std::span<const FileId> file_ids) {
    Statement rows(db.connection(), R"sql(
        WITH page(file_id) AS (SELECT DISTINCT value FROM json_each(?1))
        SELECT source.path, symbol.id, file.path, symbol.name, symbol.kind, edge.resolution, edge.refs
        FROM page CROSS JOIN files AS file ON file.id = page.file_id
                  CROSS JOIN symbols AS symbol ON symbol.file_id = page.file_id
                  CROSS JOIN edges AS edge ON edge.target_id = symbol.id
                  CROSS JOIN files AS source ON source.id = edge.source_file_id
        ORDER BY source.path, symbol.id, coalesce(edge.resolution, ''), edge.rowid
    )sql");
    rows.bind(1, bound_list(file_ids));
    std::vector<InboundReference> references;
    while (rows.step()) {
        references.push_back({.source_path = db.text(rows.text(0)),
                              .target_id = rows.integer(1),
                              .target_path = db.text(rows.text(2)),
                              .target_name = db.text(rows.text(3)),
                              .target_kind = db.text(rows.text(4)),
                              .resolution = db.text(rows.text(5)),
                              .refs = rows.integer(6)});
    }
    references.shrink_to_fit();
    return references;
}

std::vector<OutboundReference> outbound_references(Database& db, std::span<const FileId> file_ids) {
    Statement rows(db.connection(), R"sql(
        WITH page(file_id) AS (SELECT DISTINCT value FROM json_each(?1))
        SELECT source.path, edge.resolution, edge.refs, symbol.id, file.path, symbol.name, symbol.kind,
               symbol.is_export, symbol.start_line, symbol.end_line, symbol.fqn
        FROM page CROSS JOIN files AS source ON source.id = page.file_id
                  CROSS JOIN edges AS edge ON edge.source_file_id = page.file_id
                  CROSS JOIN symbols AS symbol ON symbol.id = edge.target_id
                                              AND symbol.file_id <> edge.source_file_id
                  CROSS JOIN files AS file ON file.id = symbol.file_id
        ORDER BY source.path, symbol.id, coalesce(edge.resolution, ''), edge.rowid
    )sql");
    rows.bind(1, bound_list(file_ids));
    std::vector<OutboundReference> references;
    while (rows.step()) {
        references.push_back({.source_path = db.text(rows.text(0)),
                              .target = symbol(db, rows, 3),
                              .resolution = db.text(rows.text(1)),
                              .refs = rows.integer(2)});
    }
    references.shrink_to_fit();
    return references;
}

std::vector<models::Text> import_resolved_languages(Database& db, std::span<const models::Text> languages) {
    Statement rows(db.connection(), R"sql(
        SELECT language.name
        FROM json_each(?1) AS page CROSS JOIN languages AS language ON language.name = page.value
        WHERE language.import_resolved
    )sql");
    rows.bind(1, bound_list(languages));
    std::vector<models::Text> resolved;
    while (rows.step()) {
        resolved.push_back(db.text(rows.text(0)));
    }
    return resolved;
}

}  // namespace storage
