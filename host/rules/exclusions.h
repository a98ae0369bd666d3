// The files that an index leaves out by default.
#pragma once

#include "host/rules/path_rules.h"

#include <vector>

namespace host {

/// Returns the rules that exclude vendored packages and minified files.
std::vector<PathRule> usual_exclusions();

}  // namespace host
