// What the resolution of a reference and the kind of its target say of it being a use.
#pragma once

#include "models/edge.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/internal/remembered.h"

#include <string_view>

namespace wiki::scope {

inline constexpr models::ConstantSet TRUSTED = models::TRUSTED_RESOLUTIONS;

/// What a resolution says by itself.
struct Resolution {
    bool is_evidence = false;   ///< of a use, whatever is referred to
    bool is_trusted = false;    ///< by the indexer
    bool is_unique = false;     ///< a match with the only production declaration of a name
    bool marks_target = false;  ///< whether the target is referenced at all, counted or not
};

inline Resolution _judged(std::string_view resolution) {
    return {.is_evidence = EVIDENCE_RESOLUTIONS.contains(resolution),
            .is_trusted = TRUSTED.contains(resolution),
            .is_unique = resolution == models::UNIQUE,
            .marks_target = resolution != models::LEGACY};
}

/// Rules about references, asked once for each text. They are copied with what they remember.
inline auto _resolution_rule() {
    return Remembered([](const Text& resolution) { return _judged(resolution); });
}
inline auto _name_match_kind_rule() {
    return Remembered([](const Text& kind) { return NAME_MATCH_KINDS.contains(kind); });
}

/// `is_use` for the references into a page, as a function of the reference.
inline auto _use_rule(const ScopeFacts& facts) {
    Remembered import_resolved([&facts](const Text& path) { return facts.import_resolved(path); });
    return [import_resolved, resolution_of = _resolution_rule(),
            is_name_match_kind = _name_match_kind_rule()](const InboundReference& reference) mutable {
        const Resolution resolution = resolution_of(reference.resolution);
        return resolution.is_evidence || (resolution.is_unique && !import_resolved(reference.target_path) &&
                                          !is_name_match_kind(reference.target_kind));
    };
}

}  // namespace wiki::scope
