// Rules for tests that an index notes.
#pragma once

#include "embedded/rules/path_rules.h"
#include "embedded/sqlite/connection.h"

#include <vector>

namespace embedded {

/// The given rules for tests, and behind them those that the index notes. Throws `SqliteError`, and
/// `std::runtime_error` with one line when these cannot be read.
PathRules with_noted_rules(std::vector<PathRule> rules, const Connection& index);

}  // namespace embedded
