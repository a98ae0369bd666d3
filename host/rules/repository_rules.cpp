#include "host/rules/repository_rules.h"

#include "host/rules/configuration.h"
#include "host/rules/exclusions.h"

namespace host {

namespace {

void append(std::vector<PathRule>& rules, const std::vector<PathRule>& more) {
    rules.insert(rules.end(), more.begin(), more.end());
}

}  // namespace

RepositoryRules with_repository_rules(RepositoryRules asked_for, const std::optional<Checkout>& checkout) {
    const Configuration configuration = checkout ? read_configuration(*checkout) : Configuration();
    append(asked_for.exclusions, configuration.exclusions);
    append(asked_for.exclusions, usual_exclusions());
    append(asked_for.tests, configuration.tests);
    return asked_for;
}

}  // namespace host
