#include "utils/path_filter.h"

#include <algorithm>
#include <array>

namespace utils {
namespace {

constexpr std::array<std::string_view, 5> TEST_FOLDERS{"test", "tests", "__tests__", "spec", "specs"};
constexpr std::array<std::string_view, 3> TEST_INFIXES{"_test.", ".test.", ".spec."};

bool is_test_folder(std::string_view name) {
    return std::ranges::find(TEST_FOLDERS, name) != TEST_FOLDERS.end();
}

bool is_test_file(std::string_view name) {
    const auto is_in_name = [name](std::string_view infix) { return name.find(infix) != std::string_view::npos; };
    return name == "conftest.py" || name.starts_with("test_") || std::ranges::any_of(TEST_INFIXES, is_in_name);
}

}  // namespace

bool is_test_path(std::string_view path) {
    std::size_t start = 0;
    for (std::size_t slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/', start)) {
        if (is_test_folder(path.substr(start, slash - start))) {
            return true;
        }
        start = slash + 1;
    }
    return is_test_file(path.substr(start));
}

}  // namespace utils
