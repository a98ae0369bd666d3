#include "host/rules/exclusions.h"

namespace host {

std::vector<PathRule> usual_exclusions() {
    return rules_of({"node_modules", "bower_components", "site-packages", "*.min.js", "*.min.mjs", "*.min.css"}, {});
}

}  // namespace host
