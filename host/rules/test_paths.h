// Which files are tests, by rules or else by their paths.
#pragma once

#include "host/rules/path_rules.h"

#include <functional>
#include <optional>
#include <string_view>

namespace host {

/// While an object of this class lives, `utils::is_test_path` on this thread applies its rules first, and then the
/// names of folders and files. Objects nest; only the innermost one applies.
class TestRulesInForce {
  public:
    /// `rules` decide whether a path is a test; they must outlive this object. Calls `check_interrupt` for each path
    /// that is examined; `decide` and `is_test_path` throw what it throws.
    explicit TestRulesInForce(
        const PathRules& rules, std::function<void()> check_interrupt = [] {});
    ~TestRulesInForce();
    TestRulesInForce(const TestRulesInForce&) = delete;
    TestRulesInForce& operator=(const TestRulesInForce&) = delete;

    /// Returns whether the rules make a path a test; none when no rule covers it.
    [[nodiscard]] std::optional<bool> decide(std::string_view path) const;

  private:
    const PathRules& rules_;
    const std::function<void()> check_interrupt_;
    const TestRulesInForce* outer_;
};

/// Returns the folder whose name alone makes a file a test: "src/test" for "src/test/a.ts". Empty when no folder does,
/// when another folder or the file's name does so as well, and when a rule in force covers the file.
std::string_view sole_test_folder(std::string_view path);

}  // namespace host
