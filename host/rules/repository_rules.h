// The rules for the files of an imported repository.
#pragma once

#include "host/files/checkout.h"
#include "host/rules/path_rules.h"

#include <optional>
#include <vector>

namespace host {

struct RepositoryRules {
    std::vector<PathRule> exclusions;  ///< which files are left out
    std::vector<PathRule> tests;       ///< which files are tests
};

/// Returns the requested rules, followed by those of the repository's configuration (configuration.h) and by the
/// default exclusions (exclusions.h). `checkout` is the repository, if it is available. Throws what
/// `read_configuration` throws.
RepositoryRules with_repository_rules(RepositoryRules requested, const std::optional<Checkout>& checkout);

}  // namespace host
