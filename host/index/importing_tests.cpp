#include "host/index/database.h"
#include "host/index/edge_sources.h"
#include "models/edge.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope_tests.h"

#include <optional>
#include <set>
#include <vector>

namespace wiki {

using models::Text;

// Path of a page file -> the tests with an `import` edge to one of its declarations. Files that no test imports are
// absent; the others stand in the order of `files`, and the tests of each in path order, which is that of their ids.
TestImports importing_tests(storage::Database& db, std::span<const storage::ScopeFile> files) {
    models::OrderedMap<Text, std::set<storage::FileId>> tests_of;  // the importing tests of each file
    std::vector<storage::FileId> ids;
    for (const storage::ScopeFile& file : files) {
        tests_of[file.path];
        ids.push_back(file.id);
    }
    const host::DeclarationTable& declarations = db.declarations_of(ids);
    const std::vector<host::EdgeRow>& edges = db.edges_into(ids);
    db.read_paths(host::sources_of(edges));
    const std::optional<host::RowId> import = db.resolution_named(models::IMPORT);
    models::OrderedMap<storage::FileId, bool> is_test;
    for (const host::EdgeRow& edge : edges) {
        if (edge.resolution != import) {
            continue;
        }
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

}  // namespace wiki
