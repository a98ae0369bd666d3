#include "embedded/rules/noted_rules.h"

#include "embedded/sqlite/index.h"

#include <utility>

namespace embedded {

PathRules with_noted_rules(std::vector<PathRule> rules, const Connection& index) {
    for (PathRule& rule : read_rules(noted(index, "test_rules"))) {
        rules.push_back(std::move(rule));
    }
    return PathRules(rules);
}

}  // namespace embedded
