#include "workers/wiki/scope_tests.h"

#include "embedded/database.h"
#include "embedded/edge_scan.h"
#include "models/edge.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/facts.h"

#include <algorithm>
#include <optional>
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

// The edges of resolution "import" into some declarations.
std::vector<embedded::EdgeRow> import_edges_into(storage::Database& db,
                                                 const embedded::DeclarationTable& declarations) {
    embedded::EdgeScan scan = embedded::EdgeScan::into(db.connection(), declarations.ids());
    std::vector<embedded::EdgeRow> edges;
    while (const std::optional<embedded::EdgeRow> edge = scan.next()) {
        if (db.resolution(edge->resolution) == models::IMPORT && declarations.find(edge->target) != nullptr) {
            edges.push_back(*edge);
        }
    }
    return edges;
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
// absent; the others stand in the order of `files`, and the tests of each in path order, which is that of their ids.
TestImports importing_tests(storage::Database& db, std::span<const storage::ScopeFile> files) {
    scope::OrderedMap<Text, std::set<storage::FileId>> tests_of;  // the importing files among them, by page file
    for (const storage::ScopeFile& file : files) {
        tests_of[file.path];
    }
    const embedded::DeclarationTable& declarations = db.declarations_of(ids_of(files));
    const std::vector<embedded::EdgeRow> imports = import_edges_into(db, declarations);
    db.read_paths(sources_of(imports));
    scope::OrderedMap<storage::FileId, bool> is_test;
    for (const embedded::EdgeRow& edge : imports) {
        const Text* const source = db.path(edge.source);
        const auto [known, is_new] = is_test.find_or_add(edge.source);
        if (is_new) {
            known = source != nullptr && utils::is_test_path(*source);
        }
        if (known) {
            tests_of[declarations.find(edge.target)->path].insert(edge.source);
        }
    }
    TestImports tests;
    for (const auto& [file, sources] : tests_of) {
        for (const storage::FileId source : sources) {
            tests[file].insert(*db.path(source));
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
