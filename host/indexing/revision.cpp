#include "host/indexing/revision.h"

#include "host/indexing/edge_counts.h"
#include "host/indexing/file_rows.h"
#include "host/indexing/references.h"
#include "host/indexing/report_json.h"
#include "host/rules/test_paths.h"
#include "utils/path_filter.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace host::indexing {

namespace {

// The ids that an index has for an extraction; none where it is not of these declarations.
std::optional<RowIds> ids_in(const IndexState& state, const Extraction& extraction) {
    std::vector<bool> is_module;
    for (std::size_t file = 0; file < extraction.files.size() && file < state.declarations.size(); ++file) {
        const std::int64_t more = state.declarations[file] - std::ssize(extraction.files[file].declared.declarations);
        if (more != 0 && more != 1) {
            return std::nullopt;
        }
        is_module.push_back(more == 1);
    }
    return is_module.size() == extraction.files.size() && is_module.size() == state.declarations.size()
               ? std::optional(RowIds(extraction, std::move(is_module)))
               : std::nullopt;
}

std::span<const EdgeRow> edges_from(std::uint32_t file, const IndexState& state) {
    const RowId source = RowIds::of_file(file);
    return {std::ranges::lower_bound(state.edges, source, {}, &EdgeRow::source),
            std::ranges::upper_bound(state.edges, source, {}, &EdgeRow::source)};
}

// What the references of a file mean for the rows of others.
struct Reach {
    std::set<std::uint32_t> modules;  // the files that it names as modules
    std::set<std::uint32_t> tests;    // the files that it uses which are tests by their folder
    bool is_wide = false;             // whether it reaches any other file
};

Reach reach_of(std::span<const EdgeRow> edges, std::uint32_t from, const RowIds& ids, const Extraction& extraction) {
    Reach reach;
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

// Whether the rows of other files stay. Of a test that reaches no other file, the report may say so.
bool are_alike(const Reach& one, const Reach& other, bool is_test) {
    return one.modules == other.modules && one.tests == other.tests && (!is_test || (one.is_wide && other.is_wide));
}

bool is_test_file(std::string_view path, const PathRules& tests) {
    const TestRulesInForce in_force(tests);
    return utils::is_test_path(path);
}

RevisedFile revised_file(const Extraction& extraction, std::uint32_t file, const RowIds& ids, TextSpool& spool) {
    const FileRow row = file_row(extraction, file, ids);
    RevisedFile revised{row.id, row.content_hash, row.declared_lines, {}};
    const FileDeclarations& declared = extraction.files[file].declared;
    if (ids.is_module(file)) {
        revised.declarations.push_back({ids.of_module(file), 1, std::max(declared.line_count, 1), "", ""});
    }
    for (std::uint32_t at = 0; at < declared.declarations.size(); ++at) {
        const Declaration& declaration = declared.declarations[at];
        Description description = description_of(declaration, spool);
        revised.declarations.push_back({ids.of({file, at}), declaration.lines.first, declaration.lines.last,
                                        std::move(description.signature), std::move(description.documentation)});
    }
    return revised;
}

std::string revised_report(const std::string& old, const EdgeCounts& counts,
                           const std::map<std::string, std::int64_t>& unresolved) {
    ImportReport report = read_report(old);
    for (const auto& [resolution, more] : counts.by_resolution()) {
        EdgeCount& count = report.edges_by_resolution[resolution];
        count.edges += more.edges;
        count.references += more.references;
        report.edges += more.edges;
    }
    for (const auto& [language, more] : unresolved) {
        report.unresolved_by_language[language] += more;
    }
    std::erase_if(report.unresolved_by_language, [](const auto& each) { return each.second == 0; });
    return to_json(report);
}

}  // namespace

std::optional<Revision> revise(const Extraction& extraction, std::span<const std::uint32_t> files,
                               const IndexState& state, const std::map<std::string, std::int64_t>& unresolved,
                               TextSpool& spool) {
    const std::optional<RowIds> ids = ids_in(state, extraction);
    if (!ids) {
        return std::nullopt;
    }
    const References references(extraction);
    const PathRules tests(read_rules(state.test_rules));
    EdgeCounts counts(ids->last());
    Revision revision;
    for (const std::uint32_t file : files) {
        const std::span<const EdgeRow> old_edges = edges_from(file, state);
        const FileReferences found = references.from(file);
        if (!std::ranges::all_of(found.modules, [&](const auto& named) { return ids->is_module(named.first); })) {
            return std::nullopt;
        }
        const std::vector<EdgeRow> edges = edge_rows(found, file, *ids);
        const bool is_test = is_test_file(extraction.files[file].path, tests);
        if (!are_alike(reach_of(edges, file, *ids, extraction), reach_of(old_edges, file, *ids, extraction), is_test)) {
            return std::nullopt;
        }
        for (const EdgeRow& edge : old_edges) {
            counts.remove(edge, is_test);
            revision.uses[edge.target] = 0;
        }
        for (const EdgeRow& edge : edges) {
            counts.add(edge, is_test);
            revision.uses[edge.target] = 0;
        }
        revision.edges.insert(revision.edges.end(), edges.begin(), edges.end());
        revision.files.push_back(revised_file(extraction, file, *ids, spool));
    }
    for (auto& [declaration, uses] : revision.uses) {
        uses = counts.uses(declaration);
    }
    std::erase_if(revision.uses, [](const auto& each) { return each.second == 0; });
    revision.report = revised_report(state.report, counts, unresolved);
    return revision;
}

}  // namespace host::indexing
