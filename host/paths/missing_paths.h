// Messages about paths that the index lacks.
#pragma once

#include "host/paths/find_paths.h"

#include <span>
#include <string>
#include <vector>

namespace host {

/// A line for each path that is missing, with what it may have been meant to be: of a failure for all, else for those
/// that something is near to.
std::vector<std::string> remarks_on_missing(std::span<const std::string> missing,
                                            std::span<const Suggestion> suggestions, bool is_failure);

}  // namespace host
