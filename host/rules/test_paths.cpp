#include "host/rules/test_paths.h"

#include "host/files/file_language.h"
#include "utils/path_filter.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace host {

namespace {

using std::string_view;

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): `utils::is_test_path` takes nothing but a path
thread_local const TestRulesInForce* in_force = nullptr;

constexpr std::array<string_view, 9> TEST_FOLDERS{"test", "tests",   "__tests__",   "spec",           "specs",
                                                  "e2e",  "cypress", "androidTest", "integrationTest"};
constexpr std::array<string_view, 8> TEST_INFIXES{"_test.", ".test.", ".spec.", "-test.",
                                                  "_spec.", "-spec.", ".cy.",   ".e2e."};

constexpr std::array<string_view, 4> TEST_CLASSES{"Test", "Tests", "TestCase", "Spec"};

bool is_test_folder(string_view name) {
    return std::ranges::find(TEST_FOLDERS, name) != TEST_FOLDERS.end() || name.ends_with(".Tests");
}

// "StackTest.java", not "Test.java"
bool is_test_class(string_view file) {
    const string_view name = file.substr(0, file.rfind('.'));
    const auto ends_name = [&](string_view end) { return name.size() > end.size() && name.ends_with(end); };
    return is_named_as_class(file) && std::ranges::any_of(TEST_CLASSES, ends_name);
}

bool is_test_file(string_view name) {
    const auto is_in_name = [name](string_view infix) { return name.find(infix) != string_view::npos; };
    return name == "conftest.py" || name.starts_with("test_") || std::ranges::any_of(TEST_INFIXES, is_in_name) ||
           is_test_class(name);
}

// The outermost folder of a path that is named like one of tests; empty when there is none.
string_view test_folder_of(string_view path) {
    std::size_t start = 0;
    for (std::size_t slash = path.find('/'); slash != string_view::npos; slash = path.find('/', start)) {
        if (is_test_folder(path.substr(start, slash - start))) {
            return path.substr(0, slash);
        }
        start = slash + 1;
    }
    return {};
}

bool is_named_as_test(string_view path) {
    return !test_folder_of(path).empty() || is_test_file(path.substr(path.rfind('/') + 1));
}

// The decision of the rules in force; none without one.
std::optional<bool> ruled(string_view path) {
    return in_force == nullptr ? std::nullopt : in_force->decide(path);
}

}  // namespace

TestRulesInForce::TestRulesInForce(const PathRules& rules, std::function<void()> check_interrupt)
    : rules_(rules), check_interrupt_(std::move(check_interrupt)), outer_(in_force) {
    in_force = this;
}

std::optional<bool> TestRulesInForce::decide(std::string_view path) const {
    check_interrupt_();
    return rules_.decide(path);
}

TestRulesInForce::~TestRulesInForce() {
    in_force = outer_;
}

std::string_view sole_test_folder(std::string_view path) {
    const string_view folder = test_folder_of(path);
    const bool is_sole = !folder.empty() && !is_named_as_test(path.substr(folder.size() + 1)) && !ruled(path);
    return is_sole ? folder : string_view();
}

}  // namespace host

namespace utils {

bool is_test_path(std::string_view path) {
    return host::ruled(path).value_or(host::is_named_as_test(path));
}

}  // namespace utils
