#include "host/rules/repository_rules.h"

#include "host/rules/configuration.h"
#include "host/rules/exclusions.h"

namespace host {

namespace {

void append(std::vector<PathRule>& rules, const std::vector<PathRule>& more) {
    rules.insert(rules.end(), more.begin(), more.end());
}

}  // namespace

RepositoryRules with_repository_rules(RepositoryRules requested, const std::optional<Checkout>& checkout) {
    const Configuration configuration = checkout ? read_configuration(*checkout) : Configuration();
    append(requested.exclusions, configuration.exclusions);
    append(requested.exclusions, usual_exclusions());
    append(requested.tests, configuration.tests);
    return requested;
}

}  // namespace host
