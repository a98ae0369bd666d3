// Which files are tests, told by their paths.
//
// A declaration only: whoever links the component defines the function.
#pragma once

#include <string_view>

namespace utils {

/// Whether the file at `path` (segments separated by "/") is a test.
bool is_test_path(std::string_view path);

}  // namespace utils
