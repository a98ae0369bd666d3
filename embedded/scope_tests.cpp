#include "workers/wiki/scope_tests.h"

#include "embedded/bound_list.h"
#include "embedded/database.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/facts.h"

#include <algorithm>
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

// Test -> the files of the page that it refers to or imports.
scope::OrderedMap<Text, scope::TextSet> files_reached(const scope::ScopeFacts& facts) {
    scope::OrderedMap<Text, scope::TextSet> files;
    const Text* source = nullptr;  // references from one file mostly stand together
    bool is_test = false;
    for (const scope::InboundReference& reference : facts.inbound) {
        if (source == nullptr || !source->same_buffer(reference.source_path)) {
            source = &reference.source_path;
            is_test = facts.test_sources.contains(*source);
        }
        if (is_test) {
            files[*source].insert(reference.target_path);
        }
    }
    for (const auto& [file, tests] : facts.test_imports) {
        for (const Text& test : tests.keys()) {
            files[test].insert(file);
        }
    }
    return files;
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
    const scope::OrderedMap<Text, scope::TextSet> files_by_test = files_reached(facts);
    TestsReaching reaching;
    reaching.tests.reserve(files_by_test.size());
    for (const auto& [test, files] : files_by_test) {
        reaching.tests.push_back(test);
    }
    std::sort(reaching.tests.begin(), reaching.tests.end());

    // Handed out in path order, the tests of each file are in path order too.
    scope::OrderedMap<Text, std::vector<Text>> tests_by_file;
    for (const Text& test : reaching.tests) {
        for (const Text& file : files_by_test.find(test)->keys()) {
            tests_by_file[file].push_back(test);
        }
    }
    for (const storage::ScopeFile& file : facts.files) {
        if (const std::vector<Text>* tests = tests_by_file.find(file.path)) {
            reaching.tests_by_file[file.path] = *tests;
        }
    }
    return reaching;
}

}  // namespace wiki
