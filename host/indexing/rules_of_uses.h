// The rules for tests that follow from how files are used.
#pragma once

#include "host/files/checkout.h"
#include "host/indexing/extraction.h"
#include "host/indexing/references.h"
#include "host/rules/path_rules.h"

#include <functional>
#include <optional>
#include <vector>

namespace host::indexing {

/// Returns the result of `rules_for_misnamed_tests` for the files of an extraction. Imports are the references that
/// resolve to one declaration; exports come from the packages of the checkout. Calls `check_interrupt` after each file,
/// and throws what it throws.
std::vector<PathRule> rules_of_uses(const Extraction& extraction, const References& references,
                                    const std::optional<Checkout>& checkout,
                                    const std::function<void()>& check_interrupt);

}  // namespace host::indexing
