// What somebody says of paths by patterns.
#pragma once

#include "host/text/glob.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Says of the paths that a pattern covers whether something holds. As in the files that tell a version control what to
/// ignore, a pattern with a slash in it is one for a path from the root, "src/gen" as "/src/gen/"; one without is a
/// pattern for a name in any folder. A pattern that matches a folder covers everything below it.
struct PathRule {
    std::string pattern;
    bool holds = false;
};

/// Rules from patterns for paths of which it holds and of which it does not: the latter come first.
std::vector<PathRule> rules_of(const std::vector<std::string>& holds, const std::vector<std::string>& does_not);

/// Rules as one text, and back; the empty text stands for none. Throws `std::runtime_error` with one line for any other
/// text.
std::string written(const std::vector<PathRule>& rules);
std::vector<PathRule> read_rules(std::string_view text);

/// Rules for paths, of which the first that covers a path decides.
class PathRules {
  public:
    PathRules() = default;
    /// Throws what `Glob` throws.
    explicit PathRules(const std::vector<PathRule>& rules);

    /// Whether it holds for the path; none where no rule says so.
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
