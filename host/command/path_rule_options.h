// Options that classify paths by patterns.
#pragma once

#include "host/rules/path_rules.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace host {

/// The patterns of a pair of options, such as --test and --not-test.
struct PathRuleOptions {
    std::vector<std::string> holds;     ///< of the positive option
    std::vector<std::string> does_not;  ///< of the negative option

    [[nodiscard]] std::vector<PathRule> rules() const { return rules_of(holds, does_not); }
};

/// Adds "--test GLOB" and "--not-test GLOB", which may be repeated.
void add_test_options(CLI::App& command, PathRuleOptions& options);

/// Adds "--exclude GLOB" and "--include GLOB", which may be repeated.
void add_exclusion_options(CLI::App& command, PathRuleOptions& options);

}  // namespace host
