#include "storage/grounding_queries.h"

#include "host/index/database.h"
#include "host/index/edges.h"
#include "models/ordered_map.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <type_traits>
#include <utility>

namespace storage {

namespace {

using host::DeclarationTable;
using host::EdgeRow;
using host::Edges;
using models::Text;

// The sources of some edges; of equal ones that stand together one.
std::vector<FileId> sources_of(const Edges& edges) {
    std::vector<FileId> sources;
    for (const EdgeRow& edge : edges) {
        if (sources.empty() || sources.back() != edge.source) {
            sources.push_back(edge.source);
        }
    }
    return sources;
}

// Answers questions about ids. Where the same id is asked for again and again, as by the edges of one source, it is
// looked up once.
template <class LookUp>
class Repeated {
  public:
    explicit Repeated(LookUp look_up) : look_up_(std::move(look_up)) {}

    const auto& operator()(host::RowId id) {
        if (!has_answer_ || id != id_) {
            answer_ = look_up_(id);
            id_ = id;
            has_answer_ = true;
        }
        return answer_;
    }

  private:
    LookUp look_up_;
    host::RowId id_ = 0;
    bool has_answer_ = false;
    std::invoke_result_t<LookUp&, host::RowId> answer_{};
};

// The targets of some edges that are not among these declarations, each once.
std::vector<SymbolId> targets_beyond(const Edges& edges, const DeclarationTable& declarations) {
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
    std::vector<ScopeFile> files;
    db.read_files_at(paths, [&](const host::FileRow& row) {
        files.push_back({.id = row.id, .path = db.text(row.path), .language = std::nullopt});
        if (row.language) {
            files.back().language = db.text(*row.language);
        }
    });
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

// Sorted.
Edges edges_into_declarations(Database& db, const DeclarationTable& declarations) {
    Edges edges;
    db.read_edges_into(declarations.ids(), [&](const EdgeRow& edge) { edges.push_back(edge); });
    host::sort_edges(edges);
    return edges;
}

// Whether the index holds no other files than these.
bool are_all(Database& db, std::span<const FileId> file_ids) {
    db.read_paths({file_ids.begin(), file_ids.end()});
    std::vector<FileId> held;
    std::ranges::copy_if(file_ids, std::back_inserter(held), [&](FileId file) { return db.path(file) != nullptr; });
    std::ranges::sort(held);
    held.erase(std::unique(held.begin(), held.end()), held.end());
    return db.count_files(std::ssize(held) + 1) == std::ssize(held);
}

// By the path of the source, the declaration and the name of the resolution, all of which ascend with their ids.
std::vector<InboundReference> inbound_references(Database& db, std::span<const FileId> file_ids) {
    const DeclarationTable& declarations = db.declarations_of(file_ids);
    // Edges into a page of all files lead out of it, too, of which the next question is.
    const bool is_whole = are_all(db, file_ids);
    const Edges edges_into = is_whole ? Edges() : edges_into_declarations(db, declarations);
    const Edges& edges = is_whole ? db.edges_out_of(file_ids) : edges_into;
    db.read_paths(sources_of(edges));
    std::vector<InboundReference> references;
    std::vector<std::int32_t> lines;
    references.reserve(edges.size());
    lines.reserve(edges.size());
    Repeated path_of([&](FileId file) { return db.path(file); });
    Repeated name_of([&](host::RowId resolution) { return db.resolution(resolution); });
    for (const EdgeRow& edge : edges) {
        const Text* const source = path_of(edge.source);
        const ScopeSymbol* const target = declarations.find(edge.target);
        if (source != nullptr && target != nullptr) {
            references.push_back({.source_path = *source,
                                  .target_id = edge.target,
                                  .target_path = target->path,
                                  .target_name = target->name,
                                  .target_kind = target->kind,
                                  .resolution = name_of(edge.resolution),
                                  .refs = edge.references});
            lines.push_back(Database::line(edge.first_line));
        }
    }
    db.keep_inbound_lines(std::move(lines));
    return references;
}

// By source, declaration and resolution.
std::vector<OutboundReference> outbound_references(Database& db, std::span<const FileId> file_ids) {
    const DeclarationTable& of_page = db.declarations_of(file_ids);
    db.read_paths({file_ids.begin(), file_ids.end()});
    const Edges& edges = db.edges_out_of(file_ids);
    const DeclarationTable others = db.declarations(targets_beyond(edges, of_page));
    std::vector<OutboundReference> references;
    references.reserve(edges.size());
    Repeated path_of([&](FileId file) { return db.path(file); });
    Repeated name_of([&](host::RowId resolution) { return db.resolution(resolution); });
    for (const EdgeRow& edge : edges) {
        const Text* const source = path_of(edge.source);
        const ScopeSymbol* const own = of_page.find(edge.target);
        const ScopeSymbol* const target = own != nullptr ? own : others.find(edge.target);
        if (source != nullptr && target != nullptr && target->path != *source) {
            references.push_back({.source_path = *source,
                                  .target = *target,
                                  .resolution = name_of(edge.resolution),
                                  .refs = edge.references});
        }
    }
    db.forget_edges();
    return references;
}

std::vector<Text> import_resolved_languages(Database& db, std::span<const Text> languages) {
    std::vector<Text> resolved;
    db.read_resolved_languages(languages, [&](std::string_view name) { resolved.push_back(db.text(name)); });
    return resolved;
}

}  // namespace storage
