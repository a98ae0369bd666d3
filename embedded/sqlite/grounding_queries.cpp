#include "storage/grounding_queries.h"

#include "embedded/sqlite/bound_list.h"
#include "embedded/sqlite/database.h"
#include "embedded/sqlite/edge_scan.h"
#include "models/ordered_map.h"

#include <algorithm>

namespace storage {

namespace {

using embedded::bound_list;
using embedded::DeclarationTable;
using embedded::EdgeRow;
using embedded::EdgeScan;
using embedded::Statement;
using models::Text;

// The targets of some edges that are not among these declarations, each once.
std::vector<SymbolId> targets_beyond(const std::vector<EdgeRow>& edges, const DeclarationTable& declarations) {
    std::vector<SymbolId> targets;
    for (const EdgeRow& edge : edges) {
        if (declarations.find(edge.target) == nullptr) {
            targets.push_back(edge.target);
        }
    }
    std::ranges::sort(targets);
    targets.erase(std::unique(targets.begin(), targets.end()), targets.end());
    return targets;
}

}  // namespace

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

// By file, then by first line, then by id.
std::vector<ScopeSymbol> scope_symbols(Database& db, std::span<const FileId> file_ids) {
    const DeclarationTable& declarations = db.declarations_of(file_ids);
    models::OrderedMap<Text, std::vector<const ScopeSymbol*>> by_file;
    for (const FileId file : file_ids) {
        if (const Text* const path = db.path(file)) {
            by_file[*path];
        }
    }
    for (const ScopeSymbol& declaration : declarations.all()) {
        by_file[declaration.path].push_back(&declaration);
    }
    std::vector<ScopeSymbol> symbols;
    symbols.reserve(declarations.all().size());
    by_file.update_each([&](std::vector<const ScopeSymbol*>& of_file) {
        std::ranges::stable_sort(of_file, {}, &ScopeSymbol::start_line);
        for (const ScopeSymbol* const symbol : of_file) {
            symbols.push_back(*symbol);
        }
    });
    return symbols;
}

// By the path of the source, the declaration and the name of the resolution, all of which ascend with their ids.
std::vector<InboundReference> inbound_references(Database& db, std::span<const FileId> file_ids) {
    const DeclarationTable& declarations = db.declarations_of(file_ids);
    std::vector<EdgeRow> edges = EdgeScan::into(db.connection(), declarations.ids()).rest();
    std::ranges::sort(edges);
    db.read_paths(sources_of(edges));
    std::vector<InboundReference> references;
    references.reserve(edges.size());
    for (const EdgeRow& edge : edges) {
        const Text* const source = db.path(edge.source);
        const ScopeSymbol* const target = declarations.find(edge.target);
        if (source != nullptr && target != nullptr) {
            references.push_back({.source_path = *source,
                                  .target_id = edge.target,
                                  .target_path = target->path,
                                  .target_name = target->name,
                                  .target_kind = target->kind,
                                  .resolution = db.resolution(edge.resolution),
                                  .refs = edge.references});
        }
    }
    return references;
}

// In the order of the edges: by source, declaration and resolution.
std::vector<OutboundReference> outbound_references(Database& db, std::span<const FileId> file_ids) {
    const DeclarationTable& of_page = db.declarations_of(file_ids);
    db.read_paths({file_ids.begin(), file_ids.end()});
    std::vector<EdgeRow> edges = EdgeScan::out_of(db.connection(), {file_ids.begin(), file_ids.end()}).rest();
    const DeclarationTable others = db.declarations(targets_beyond(edges, of_page));
    const auto target_of = [&](const EdgeRow& edge) {
        const ScopeSymbol* const own = of_page.find(edge.target);
        return own != nullptr ? own : others.find(edge.target);
    };
    std::erase_if(edges, [&](const EdgeRow& edge) {
        const Text* const source = db.path(edge.source);
        const ScopeSymbol* const target = target_of(edge);
        return source == nullptr || target == nullptr || target->path == *source;
    });
    std::vector<OutboundReference> references;
    references.reserve(edges.size());
    for (const EdgeRow& edge : edges) {
        references.push_back({.source_path = *db.path(edge.source),
                              .target = *target_of(edge),
                              .resolution = db.resolution(edge.resolution),
                              .refs = edge.references});
    }
    return references;
}

std::vector<Text> import_resolved_languages(Database& db, std::span<const Text> languages) {
    Statement rows(db.connection(), R"sql(
        SELECT language.name
        FROM json_each(?1) AS page CROSS JOIN languages AS language ON language.name = page.value
        WHERE language.import_resolved
    )sql");
    rows.bind(1, bound_list(languages));
    std::vector<Text> resolved;
    while (rows.step()) {
        resolved.push_back(db.text(rows.text(0)));
    }
    return resolved;
}

}  // namespace storage
