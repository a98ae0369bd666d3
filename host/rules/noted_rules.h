// The rules for tests that an index stores.
#pragma once

#include "host/index/database.h"
#include "host/rules/path_rules.h"

#include <vector>

namespace host {

/// Returns the given rules for tests, followed by those that the index stores. Throws `IndexError`, and
/// `std::runtime_error` with one line when the stored rules cannot be read.
PathRules with_noted_rules(std::vector<PathRule> rules, storage::Database& db);

}  // namespace host
