// Which tests reach the files of a page.
//
// Declarations only: whoever links the component defines the functions.
#pragma once

#include "models/ordered_map.h"
#include "models/text.h"
#include "storage/grounding_queries.h"

#include <span>
#include <string>
#include <vector>

namespace wiki {

namespace scope {
struct ScopeFacts;
}

/// A mapping from text to a set of texts: whatever `importing_tests` and `tests_reaching` agree on. The component
/// keeps it in the facts of the page and never looks inside.
using TestImports = models::OrderedMap<models::Text, models::TextSet>;

/// The tests that reach a page.
struct TestsReaching {
    std::vector<models::Text> tests;  ///< every test that reaches a file of the page
    models::OrderedMap<models::Text, std::vector<models::Text>> tests_by_file;  ///< path -> tests, as shown
};

/// The tests that import `files`, the files of a page.
TestImports importing_tests(storage::Database& db, std::span<const storage::ScopeFile> files);

/// The tests that reach each file of the page. A file that none reaches may be absent from `tests_by_file`; the order
/// of each list is the order in which the tests are shown.
TestsReaching tests_reaching(const scope::ScopeFacts& facts);

}  // namespace wiki
