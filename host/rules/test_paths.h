// Which files are tests, told by their paths unless somebody says otherwise.
#pragma once

#include "host/rules/path_rules.h"

#include <functional>
#include <optional>
#include <string_view>

namespace host {

/// While one lives, `utils::is_test_path` asks its rules first on this thread, and then the names of folders and files.
/// Several live one within the other; the innermost is asked alone.
class TestRulesInForce {
  public:
    /// `rules` say whether a path is a test. They must outlive this object. `check` is called for every path that is asked
    /// for; what it throws comes out of whoever asks.
    explicit TestRulesInForce(
        const PathRules& rules, std::function<void()> check = [] {});
    ~TestRulesInForce();
    TestRulesInForce(const TestRulesInForce&) = delete;
    TestRulesInForce& operator=(const TestRulesInForce&) = delete;

    /// Whether the rules say that a path is a test; none when they say nothing of it.
    [[nodiscard]] std::optional<bool> decide(std::string_view path) const;

  private:
    const PathRules& rules_;
    const std::function<void()> check_;
    const TestRulesInForce* before_;
};

/// The folder that alone makes a file a test, by its name: "src/test" of "src/test/a.ts". Empty when there is none, and
/// when a folder below that one, the name of the file or a rule in force says what it is.
std::string_view sole_test_folder(std::string_view path);

}  // namespace host
