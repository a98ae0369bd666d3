// The rules for the files of a repository that is imported.
#pragma once

#include "host/files/checkout.h"
#include "host/rules/path_rules.h"

#include <optional>
#include <vector>

namespace host {

struct RepositoryRules {
    std::vector<PathRule> exclusions;  ///< what is left out
    std::vector<PathRule> tests;       ///< what is a test
};

/// What is asked for, then what the repository says of itself (configuration.h), then, of exclusions, what is usual
/// (exclusions.h). `checkout` is where the repository is, if it is at hand. Throws as `read_configuration` does.
RepositoryRules with_repository_rules(RepositoryRules asked_for, const std::optional<Checkout>& checkout);

}  // namespace host
