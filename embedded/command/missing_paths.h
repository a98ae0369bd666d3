// What is said of paths that the index does not hold.
#pragma once

#include "embedded/paths/find_paths.h"

#include <span>
#include <string>

namespace embedded {

/// Says which paths are missing, and what they may have been meant to be: of a failure all, else those that something
/// is near to. Throws `CLI::RuntimeError` when it is a failure.
void judge_missing_paths(std::span<const std::string> missing, std::span<const Suggestion> suggestions,
                         bool is_failure);

}  // namespace embedded
