#include "host/rules/noted_rules.h"

#include "host/index/notes.h"
#include <utility>

namespace host {

PathRules with_noted_rules(std::vector<PathRule> rules, storage::Database& db) {
    for (PathRule& rule : read_rules(db.noted(notes::TEST_RULES))) {
        rules.push_back(std::move(rule));
    }
    return PathRules(rules);
}

}  // namespace host
