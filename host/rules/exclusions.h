// Which files an index leaves out unless somebody says otherwise.
#pragma once

#include "host/rules/path_rules.h"

#include <vector>

namespace host {

/// Leaves out what is installed beside the sources, and what is made smaller of them.
std::vector<PathRule> usual_exclusions();

}  // namespace host
