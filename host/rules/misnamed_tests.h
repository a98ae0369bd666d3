// Production files that lie in a folder named like one of tests: viem's actions/test/, Django's django/test/.
//
// Their uses distinguish them: nothing imports a test, but a library's own code imports these files.
#pragma once

#include "host/rules/path_rules.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A file that uses a declaration of another file.
struct FileImport {
    std::uint32_t source = 0;  ///< index of the file that uses it, in the list of paths
    std::uint32_t target = 0;  ///< index of the file that declares it
};

/// Returns rules that exempt files from being tests: one for a folder that holds no tests, else one for each file.
///
/// Only files that are tests by the name of a folder alone (`sole_test_folder`) are examined. Such a file is not a test
/// when
///
///   - a package exports it;
///   - production code imports it. That code must lie below the parent of the test folder, and the parent must itself
///     hold production code. Code for those who develop the library, such as benchmarks, does not count. Nor does Rust,
///     which marks tests in the code;
///   - a file of the same test folder imports it, and that file is not a test;
///   - or most files of its test folder are not tests.
///
/// `paths` holds all files, `imports` all imports of the examined files, and `exported` the paths that packages export,
/// in which "*" matches anything. Returns at most 100 rules; files beyond these stay tests.
std::vector<PathRule> rules_for_misnamed_tests(std::span<const std::string_view> paths,
                                               std::span<const FileImport> imports,
                                               std::span<const std::string> exported);

}  // namespace host
