#include "workers/wiki/scope/uses.h"

#include "models/edge.h"
#include "workers/wiki/scope/facts.h"

namespace wiki::scope {

UseRules use_rules(std::string_view resolution) {
    using enum TargetKinds;
    if (EVIDENCE_RESOLUTIONS.contains(resolution)) {
        return {.is_evidence = true, .likely_use = ALL, .neighbour = ALL, .name_match = NONE, .reaches_target = true};
    }
    if (resolution == models::UNIQUE) {
        return {.likely_use = OTHER, .neighbour = OTHER, .name_match = NAME_MATCH, .reaches_target = true};
    }
    return {.neighbour = OTHER, .reaches_target = resolution != models::LEGACY};
}

TargetKinds kinds_of(std::string_view target_kind) {
    return NAME_MATCH_KINDS.contains(target_kind) ? TargetKinds::NAME_MATCH : TargetKinds::OTHER;
}

bool is_use(std::string_view resolution, std::string_view target_kind, bool import_resolved) {
    const UseRules rules = use_rules(resolution);
    return rules.is_evidence || (!import_resolved && includes(rules.likely_use, target_kind));
}

}  // namespace wiki::scope
