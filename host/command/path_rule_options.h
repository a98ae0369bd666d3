// Options that say of paths by patterns what they are.
#pragma once

#include "host/rules/path_rules.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace host {

/// The patterns of a pair of options, of which one says that something holds, the other that it does not.
struct PathRuleOptions {
    std::vector<std::string> holds;
    std::vector<std::string> does_not;

    [[nodiscard]] std::vector<PathRule> rules() const { return rules_of(holds, does_not); }
};

/// Adds "--test GLOB" and "--not-test GLOB", which may be repeated.
void add_test_options(CLI::App& command, PathRuleOptions& options);

/// Adds "--exclude GLOB" and "--include GLOB", which may be repeated.
void add_exclusion_options(CLI::App& command, PathRuleOptions& options);

}  // namespace host
