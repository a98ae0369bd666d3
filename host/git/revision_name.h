// The names of revisions: "main", "v1.2", "HEAD~3", "1a2b3c4d^2".
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::git {

/// A step from a commit to one that it was made from.
struct Step {
    std::size_t generations = 1;  ///< how many times the step is taken; 0 to stay
    std::size_t parent = 1;       ///< which parent, counted from 1
};

struct RevisionName {
    std::string base;         ///< a branch, a tag, another reference, or the hash of a commit
    std::vector<Step> steps;  ///< from there
};

/// Reads a name as Git does: behind its base any number of "~N" (N generations up), "^N" (the parent N) and "^{}" or
/// "^{commit}" (what a tag is of), where N is 1 if it is not there. "@" is "HEAD". Returns none for anything else, and
/// for bases that no reference can bear.
std::optional<RevisionName> revision_name(std::string_view text);

}  // namespace host::git
