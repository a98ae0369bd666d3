#include "workers/wiki/scope_tests.h"

#include "embedded/bound_list.h"
#include "embedded/database.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/facts.h"

#include <set>
#include <vector>

namespace wiki {

namespace {

using models::Text;

std::vector<storage::FileId> ids_of(std::span<const storage::ScopeFile> files) {
    std::vector<storage::FileId> ids;
    for (const storage::ScopeFile& file : files) {
        ids.push_back(file.id);
    }
    return ids;
}

// Page file -> the tests that refer to it, from the references of the page.
scope::OrderedMap<Text, scope::TextSet> referring_tests(const scope::ScopeFacts& facts) {
    scope::OrderedMap<Text, scope::TextSet> tests;
    const Text* source = nullptr;  // references from one file mostly stand together
    bool is_test = false;
    for (const scope::InboundReference& reference : facts.inbound) {
        if (source == nullptr || !source->same_buffer(reference.source_path)) {
            source = &reference.source_path;
            is_test = facts.test_sources.contains(*source);
        }
        if (is_test) {
            tests[reference.target_path].insert(*source);
        }
    }
    return tests;
}

}  // namespace

// Path of a page file -> the tests with an `import` edge to one of its declarations. Files that no test imports are
// absent; the others stand in the order of `files`.
TestImports importing_tests(storage::Database& db, std::span<const storage::ScopeFile> files) {
    embedded::Statement rows(db.connection(), R"sql(
        WITH page(file_id, place) AS (SELECT value, min(key) FROM json_each(?1) GROUP BY value),
             importer(place, file_id, source_id) AS (
                 SELECT DISTINCT page.place, page.file_id, edge.source_file_id
                 FROM page CROSS JOIN symbols AS symbol ON symbol.file_id = page.file_id
                           CROSS JOIN edges AS edge ON edge.target_id = symbol.id
                 WHERE edge.resolution = 'import')
        SELECT file.path, source.path
        FROM importer CROSS JOIN files AS file ON file.id = importer.file_id
                      CROSS JOIN files AS source ON source.id = importer.source_id
        ORDER BY importer.place, source.path
    )sql");
    rows.bind(1, embedded::bound_list(ids_of(files)));
    TestImports tests;
    while (rows.step()) {
        if (const std::string_view source = rows.text(1); utils::is_test_path(source)) {
            tests[db.text(rows.text(0))].insert(db.text(source));
        }
    }
    return tests;
}

// The tests that refer to or import each file of the page, in path order, each once.
TestsReaching tests_reaching(const scope::ScopeFacts& facts) {
    const auto referring = referring_tests(facts);
    std::set<Text> all;
    TestsReaching reaching;
    for (const storage::ScopeFile& file : facts.files) {
        std::set<Text> tests;
        for (const auto* by_file : {&referring, &facts.test_imports}) {
            if (const scope::TextSet* found = by_file->find(file.path)) {
                const std::vector<Text> paths = found->keys();
                tests.insert(paths.begin(), paths.end());
            }
        }
        if (!tests.empty()) {
            reaching.tests_by_file[file.path].assign(tests.begin(), tests.end());
            all.merge(tests);
        }
    }
    reaching.tests.assign(all.begin(), all.end());
    return reaching;
}

}  // namespace wiki
