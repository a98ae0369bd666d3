// Files that a folder's name takes for tests, and that are part of what a library offers: viem's actions/test/, Django's
// django/test/. Uses tell them apart: nothing imports a test, and the library's own code imports these.
#pragma once

#include "host/rules/path_rules.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// That one file uses a declaration of another one; both by place.
struct FileImport {
    std::uint32_t source = 0;
    std::uint32_t target = 0;
};

/// Rules which say of the files that a folder alone takes for tests (`sole_test_folder`) that they are none: one for the
/// folder where it holds no tests, else one for each file. A file is no test when
///
///   - a package exports it;
///   - production code imports it from below the folder that holds its folder of tests, and that is one of sources:
///     production code lies in it itself. What serves those who work on the library does not count, as benchmarks, nor
///     does Rust, where the code itself says what a test is;
///   - one that is no test imports it, in the same folder of tests;
///   - or most files of its folder of tests are none.
///
/// `paths` are all files, `imports` all into those that a folder alone takes for tests, and `exported` the paths that
/// packages export, in which "*" stands for anything. There are at most 100 rules; files beyond these stay tests.
std::vector<PathRule> rules_for_misnamed_tests(std::span<const std::string_view> paths,
                                               std::span<const FileImport> imports,
                                               std::span<const std::string> exported);

}  // namespace host
