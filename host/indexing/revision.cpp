#include "host/indexing/revision.h"

#include "host/indexing/edge_counts.h"
#include "host/indexing/file_rows.h"
#include "host/indexing/references.h"
#include "host/indexing/report_json.h"
#include "host/rules/test_paths.h"
#include "host/summary/shared_summaries.h"
#include "utils/path_filter.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::indexing {

namespace {

// The first ids of all files, as `RowIds` takes them. A file without declarations has the ids that were left to it,
// which end where the next file begins.
std::vector<RowId> first_ids(const IndexState& state) {
    std::vector<RowId> ends{1};  // of the declarations up to each file
    for (std::size_t file = 0; file < state.first.size(); ++file) {
        ends.push_back(state.first[file] == 0 ? ends.back() : state.first[file] + state.declarations[file]);
    }
    std::vector<RowId> first = state.first;
    first.push_back(ends.back() + ROOM_FOR_MORE * (1 + std::ranges::count(ends, ends.back())));
    for (std::size_t file = state.first.size(); file-- > 0;) {
        if (first[file] == 0) {
            first[file] = std::max(first[file + 1] - ROOM_FOR_MORE, ends[file]);
        }
    }
    return first;
}

// The rows of a file among those that are ordered by file.
template <class Row>
std::span<const Row> rows_of(std::uint32_t file, const std::vector<Row>& rows, RowId Row::*of) {
    const RowId id = RowIds::of_file(file);
    return {std::ranges::lower_bound(rows, id, {}, of), std::ranges::upper_bound(rows, id, {}, of)};
}

std::span<const IndexedDeclaration> indexed_in(std::uint32_t file, const IndexState& state) {
    return rows_of(file, state.revised, &IndexedDeclaration::file);
}

std::span<const EdgeRow> edges_from(std::uint32_t file, const IndexState& state) {
    return rows_of(file, state.edges, &EdgeRow::source);
}

// The ids that an index is to have for an extraction; none where other files than these have other declarations.
std::optional<RowIds> ids_in(const IndexState& state, const Extraction& extraction,
                             std::span<const std::uint32_t> files) {
    if (extraction.files.size() != state.declarations.size()) {
        return std::nullopt;
    }
    std::vector<bool> is_module;
    for (std::uint32_t file = 0; file < extraction.files.size(); ++file) {
        const std::int64_t more = state.declarations[file] - std::ssize(extraction.files[file].declared.declarations);
        if (std::ranges::binary_search(files, file)) {
            const std::span<const IndexedDeclaration> indexed = indexed_in(file, state);
            is_module.push_back(!indexed.empty() && indexed.front().kind == MODULE_KIND);
        } else if (more == 0 || more == 1) {
            is_module.push_back(more == 1);
        } else {
            return std::nullopt;
        }
    }
    return RowIds(extraction, std::move(is_module), first_ids(state));
}

// The ids of declarations that stay, by those that they had. Declarations of one name and kind stay, in their order,
// where there are as many as there were.
std::map<RowId, RowId> ids_that_stay(std::span<const IndexedDeclaration> indexed,
                                     std::span<const DeclarationRow> rows) {
    using Key = std::pair<std::string_view, std::string_view>;
    std::map<Key, std::vector<RowId>> ids;
    for (const DeclarationRow& row : rows) {
        ids[{row.name, row.kind}].push_back(row.id);
    }
    std::map<Key, std::vector<RowId>> old_ids;
    for (const IndexedDeclaration& declaration : indexed) {
        old_ids[{declaration.name, declaration.kind}].push_back(declaration.id);
    }
    std::map<RowId, RowId> staying;
    for (const auto& [key, olds] : old_ids) {
        const auto found = ids.find(key);
        for (std::size_t at = 0; found != ids.end() && found->second.size() == olds.size() && at < olds.size(); ++at) {
            staying.emplace(olds[at], found->second[at]);
        }
    }
    return staying;
}

// What the references of a file mean for the rows of others.
struct Reach {
    std::set<std::uint32_t> modules;  // the files that it names as modules
    std::set<std::uint32_t> tests;    // the files that it uses which are tests by their folder
    bool is_any = false;              // whether it reaches anything
    bool is_wide = false;             // whether it reaches any other file
};

Reach reach_of(std::span<const EdgeRow> edges, std::uint32_t from, const RowIds& ids, const Extraction& extraction) {
    Reach reach;
    reach.is_any = !edges.empty();
    for (const EdgeRow& edge : edges) {
        const std::uint32_t file = ids.file_of(edge.target);
        if (ids.is_module(file) && ids.of_module(file) == edge.target) {
            reach.modules.insert(file);
        }
        if (edge.resolution == id_of(Resolution::IMPORT) && !sole_test_folder(extraction.files[file].path).empty()) {
            reach.tests.insert(file);
        }
        reach.is_wide = reach.is_wide || file != from;
    }
    return reach;
}

// Whether the rows of other files stay, and what a report says of a test that has references but reaches no other file.
bool leaves_others(const Reach& old, const Reach& now, bool is_test) {
    const auto is_lost = [](const Reach& reach) { return reach.is_any && !reach.is_wide; };
    return std::ranges::includes(now.modules, old.modules) && now.tests == old.tests &&
           (!is_test || is_lost(old) == is_lost(now));
}

bool is_test_file(std::string_view path, const PathRules& tests) {
    const TestRulesInForce in_force(tests);
    return utils::is_test_path(path);
}

class Reviser {
  public:
    Reviser(const Extraction& extraction, const IndexState& state, const RowIds& ids, TextSpool& spool)
        : extraction_(extraction), state_(state), ids_(ids), spool_(spool), references_(extraction),
          tests_(read_rules(state.test_rules)), counts_(ids.last()) {}

    // Takes the files, ascending. Returns whether no rows but those of a revision change.
    [[nodiscard]] bool take(std::span<const std::uint32_t> files) {
        return std::ranges::all_of(files, [&](std::uint32_t file) { return take_declarations(file); }) &&
               std::ranges::all_of(files, [&](std::uint32_t file) { return take_references(file); }) && move_edges();
    }

    Revision revision(const ImportReport& found, const std::map<std::string, std::int64_t>& unresolved) {
        for (RevisedFile& file : revision_.files) {
            for (RevisedDeclaration& declaration : file.declarations) {
                declaration.uses += counts_.uses(declaration.id);
                revision_.uses.erase(declaration.id);
            }
        }
        revision_.uses.erase(GONE);
        for (auto& [declaration, uses] : revision_.uses) {
            uses = counts_.uses(declaration);
        }
        std::erase_if(revision_.uses, [](const auto& each) { return each.second == 0; });
        revision_.shared_summaries = shared_summaries(extraction_.summaries);
        revision_.report = report(found, unresolved);
        return std::move(revision_);
    }

  private:
    static constexpr RowId GONE = 0;

    bool take_declarations(std::uint32_t file) {
        const std::vector<DeclarationTexts> texts = texts_of(extraction_, file, ids_, spool_);
        const std::vector<DeclarationRow> rows = declaration_rows(extraction_, references_, file, ids_, texts);
        if (std::ssize(rows) > ids_.room(file)) {
            return false;
        }
        const FileRow row = file_row(extraction_, file, ids_);
        RevisedFile revised{row.id, row.content_hash, row.declared_lines, {}};
        for (std::size_t at = 0; at < rows.size(); ++at) {
            const auto& [id, of, name, fqn, kind, is_export, first_line, last_line, uses] = rows[at];
            const auto& [signature, documentation] = texts[at].description;
            revised.declarations.push_back({id, std::string(name), std::string(fqn), kind, is_export, first_line,
                                            last_line, uses, signature, documentation});
            ++kinds_[std::string(kind)];
        }
        const std::span<const IndexedDeclaration> indexed = indexed_in(file, state_);
        const std::map<RowId, RowId> staying = ids_that_stay(indexed, rows);
        for (const IndexedDeclaration& old : indexed) {
            --kinds_[old.kind];
            const auto now = staying.find(old.id);
            ids_now_.emplace(old.id, now == staying.end() ? GONE : now->second);
            if (now != staying.end()) {
                revised.declarations[static_cast<std::size_t>(now->second - rows.front().id)].uses = old.uses;
            }
        }
        revision_.files.push_back(std::move(revised));
        return true;
    }

    // What has the id now that had this one.
    [[nodiscard]] RowId id_now(RowId declaration) const {
        const auto found = ids_now_.find(declaration);
        return found == ids_now_.end() ? declaration : found->second;
    }

    bool take_references(std::uint32_t file) {
        const std::span<const EdgeRow> old_edges = edges_from(file, state_);
        const FileReferences found = references_.from(file);
        if (!std::ranges::all_of(found.modules, [&](const auto& named) { return ids_.is_module(named.first); })) {
            return false;
        }
        const std::vector<EdgeRow> edges = edge_rows(found, file, ids_);
        const bool is_test = is_test_file(extraction_.files[file].path, tests_);
        for (EdgeRow edge : old_edges) {
            edge.target = id_now(edge.target);
            counts_.remove(edge, is_test);
            revision_.uses[edge.target] = 0;
        }
        for (const EdgeRow& edge : edges) {
            counts_.add(edge, is_test);
            revision_.uses[edge.target] = 0;
        }
        revision_.edges.insert(revision_.edges.end(), edges.begin(), edges.end());
        return leaves_others(reach_of(old_edges, file, ids_, extraction_), reach_of(edges, file, ids_, extraction_),
                             is_test);
    }

    // Returns whether the targets of all edges are still there.
    bool move_edges() {
        for (const EdgeRow& edge : state_.edges_into) {
            EdgeRow moved = edge;
            moved.target = id_now(edge.target);
            if (moved.target == GONE) {
                return false;
            }
            if (moved.target != edge.target) {
                revision_.moved_edges.emplace_back(edge, moved);
            }
        }
        return true;
    }

    std::string report(const ImportReport& found, const std::map<std::string, std::int64_t>& unresolved) const {
        ImportReport report = read_report(state_.report);
        report.unread = found.unread;
        report.unparsed = found.unparsed;
        report.damaged = found.damaged;
        for (const auto& [kind, more] : kinds_) {
            report.declarations += more;
            report.declarations_by_kind[kind] += more;
        }
        for (const auto& [resolution, more] : counts_.by_resolution()) {
            EdgeCount& count = report.edges_by_resolution[resolution];
            count.edges += more.edges;
            count.references += more.references;
            report.edges += more.edges;
        }
        for (const auto& [language, more] : unresolved) {
            report.unresolved_by_language[language] += more;
        }
        const auto is_none = [](const auto& each) { return each.second == 0; };
        std::erase_if(report.declarations_by_kind, is_none);
        std::erase_if(report.unresolved_by_language, is_none);
        return to_json(report);
    }

    const Extraction& extraction_;
    const IndexState& state_;
    const RowIds& ids_;
    TextSpool& spool_;
    const References references_;
    const PathRules tests_;
    EdgeCounts counts_;                          // what is added to those of the index
    std::map<std::string, std::int64_t> kinds_;  // likewise: declarations
    std::unordered_map<RowId, RowId> ids_now_;   // of all declarations that the files had
    Revision revision_;
};

}  // namespace

std::optional<Revision> revise(const Extraction& extraction, std::span<const std::uint32_t> files,
                               const IndexState& state, const ImportReport& found,
                               const std::map<std::string, std::int64_t>& unresolved, TextSpool& spool) {
    const std::optional<RowIds> ids = ids_in(state, extraction, files);
    if (!ids) {
        return std::nullopt;
    }
    Reviser reviser(extraction, state, *ids, spool);
    return reviser.take(files) ? std::optional(reviser.revision(found, unresolved)) : std::nullopt;
}

}  // namespace host::indexing
