// Which files are tests, told by their paths unless somebody says otherwise.
#pragma once

#include "embedded/rules/path_rules.h"

namespace embedded {

/// While one lives, `utils::is_test_path` asks its rules first on this thread, and then the names of folders and files.
/// Several live one within the other; the innermost is asked alone.
class TestRulesInForce {
  public:
    /// `rules` say whether a path is a test. They must outlive this object.
    explicit TestRulesInForce(const PathRules& rules);
    ~TestRulesInForce();
    TestRulesInForce(const TestRulesInForce&) = delete;
    TestRulesInForce& operator=(const TestRulesInForce&) = delete;

  private:
    const PathRules* before_;
};

}  // namespace embedded
