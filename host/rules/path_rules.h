// Rules that decide about paths by patterns, such as which files are tests.
#pragma once

#include "host/text/glob.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Decides for the paths that a pattern covers. Patterns work as in a .gitignore file: a pattern with a slash matches a
/// path from the root ("src/gen", "/src/gen/"), a pattern without one matches a name in any folder ("*.pb.ts"). A
/// pattern that matches a folder covers everything below it.
struct PathRule {
    std::string pattern;
    bool holds = false;  ///< the decision: true for "is a test" or "is left out", false for the opposite
};

/// Returns the rules for two lists of patterns. Those that decide false come first, so they win.
std::vector<PathRule> rules_of(const std::vector<std::string>& holds, const std::vector<std::string>& does_not);

/// Returns the rules as JSON; the empty string for no rules.
std::string to_json(const std::vector<PathRule>& rules);

/// Reads the rules that `to_json` wrote. Throws `std::runtime_error` with one line for any other text.
std::vector<PathRule> read_rules(std::string_view json);

/// A list of rules. The first one that covers a path decides.
class PathRules {
  public:
    PathRules() = default;
    /// Throws what `Glob` throws.
    explicit PathRules(const std::vector<PathRule>& rules);

    /// Returns the decision for a path; none when no rule covers it.
    [[nodiscard]] std::optional<bool> decide(std::string_view path) const;

  private:
    struct Prepared {
        Glob glob;
        bool is_anchored = false;  // at the root
        bool holds = false;
    };
    std::vector<Prepared> rules_;
};

}  // namespace host
