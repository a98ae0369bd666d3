// What the uses of files say of whether they are tests.
#pragma once

#include "host/files/checkout.h"
#include "host/indexing/extraction.h"
#include "host/indexing/references.h"
#include "host/rules/path_rules.h"

#include <functional>
#include <optional>
#include <vector>

namespace host::indexing {

/// The rules that `rules_for_misnamed_tests` gives for the files of an index, from references that are no ambiguous ones
/// and the packages of the checkout. Calls `check_interrupt` again and again; throws what that throws.
std::vector<PathRule> rules_of_uses(const Extraction& extraction, const References& references,
                                    const std::optional<Checkout>& checkout,
                                    const std::function<void()>& check_interrupt);

}  // namespace host::indexing
