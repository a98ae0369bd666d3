// Rules for tests that an index notes.
#pragma once

#include "host/index/database.h"
#include "host/rules/path_rules.h"

#include <vector>

namespace host {

/// The given rules for tests, and behind them those that the index notes. Throws `IndexError`, and
/// `std::runtime_error` with one line when these cannot be read.
PathRules with_noted_rules(std::vector<PathRule> rules, storage::Database& db);

}  // namespace host
