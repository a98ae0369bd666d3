// The rules of uses.h over the references of a page, asked once for each text.
#pragma once

#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/internal/remembered.h"
#include "workers/wiki/scope/uses.h"

namespace wiki::scope {

/// `use_rules` and `includes`.
class RememberedRules {
  public:
    UseRules of(const Text& resolution) { return rules_of_(resolution); }

    bool includes(TargetKinds kinds, const Text& target_kind) {
        return kinds != TargetKinds::NONE && (kinds == TargetKinds::ALL || kinds == kinds_of_(target_kind));
    }

  private:
    Remembered<decltype(&use_rules)> rules_of_{&use_rules};
    Remembered<decltype(&kinds_of)> kinds_of_{&kinds_of};
};

/// `is_use` of the references into a page, as a function of the reference.
inline auto _use_rule(const ScopeFacts& facts) {
    Remembered import_resolved([&facts](const Text& path) { return facts.import_resolved(path); });
    return [import_resolved, rules = RememberedRules()](const InboundReference& reference) mutable {
        const UseRules of_resolution = rules.of(reference.resolution);
        return of_resolution.is_evidence || (rules.includes(of_resolution.likely_use, reference.target_kind) &&
                                             !import_resolved(reference.target_path));
    };
}

}  // namespace wiki::scope
