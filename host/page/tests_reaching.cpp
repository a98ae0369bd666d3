#include "models/edge.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope_tests.h"

#include <algorithm>
#include <vector>

namespace wiki {

namespace {

using models::Text;

// Whether a reference from a test leads to a file that it tests: another one, or itself where it imports itself.
bool reaches_target(const scope::InboundReference& reference) {
    return reference.source_path != reference.target_path || reference.resolution == models::IMPORT;
}

// Test -> the files of the page that it refers to.
models::OrderedMap<Text, models::TextSet> files_reached(const scope::ScopeFacts& facts) {
    models::OrderedMap<Text, models::TextSet> files;
    for (const scope::InboundReference& reference : facts.inbound) {
        if (facts.test_sources.contains(reference.source_path) && reaches_target(reference)) {
            files[reference.source_path].insert(reference.target_path);
        }
    }
    return files;
}

}  // namespace

// None: an import by a test is a reference into the page like any other, and `tests_reaching` reads those.
TestImports importing_tests(storage::Database& /*db*/, std::span<const storage::ScopeFile> /*files*/) {
    return {};
}

// The tests that refer to each file of the page, in path order, each once.
TestsReaching tests_reaching(const scope::ScopeFacts& facts) {
    const models::OrderedMap<Text, models::TextSet> files_by_test = files_reached(facts);
    TestsReaching reaching;
    reaching.tests.reserve(files_by_test.size());
    for (const auto& [test, files] : files_by_test) {
        reaching.tests.push_back(test);
    }
    std::sort(reaching.tests.begin(), reaching.tests.end());

    // Handed out in path order, the tests of each file are in path order too.
    models::OrderedMap<Text, std::vector<Text>> tests_by_file;
    for (const Text& test : reaching.tests) {
        for (const Text& file : *files_by_test.find(test)) {
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
