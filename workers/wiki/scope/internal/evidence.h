// What the resolution of a reference and the kind of its target say of it being a use.
#pragma once

#include "models/edge.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/internal/remembered.h"

#include <string_view>

namespace wiki::scope {

inline constexpr models::ConstantSet TRUSTED = models::TRUSTED_RESOLUTIONS;

/// The resolution of a match with the only production declaration of a name.
inline constexpr std::string_view UNIQUE = "unique";

enum class Standing { NONE, BY_NAME, EVIDENCE };

/// What a resolution says by itself.
inline Standing _standing(std::string_view resolution) {
    return EVIDENCE_RESOLUTIONS.contains(resolution) ? Standing::EVIDENCE
           : resolution == UNIQUE                    ? Standing::BY_NAME
                                                     : Standing::NONE;
}

/// The rule of `is_use`, which asks about the target only where the resolution leaves it open.
inline bool _is_use(Standing standing, auto is_import_resolved, auto is_name_match_kind) {
    return standing == Standing::EVIDENCE ||
           (standing == Standing::BY_NAME && !is_import_resolved() && !is_name_match_kind());
}

/// Whether the kind of a target is one of `NAME_MATCH_KINDS`, as a function of the kind.
inline auto _name_match_kind_rule() {
    return Remembered([](const Text& kind) { return NAME_MATCH_KINDS.contains(kind); });
}

/// `is_use` for the references into a page, as a function of the reference.
inline auto _use_rule(const ScopeFacts& facts) {
    Remembered standing(_standing);
    Remembered import_resolved([&facts](const Text& path) { return facts.import_resolved(path); });
    return [standing, import_resolved,
            is_name_match_kind = _name_match_kind_rule()](const InboundReference& reference) mutable {
        return _is_use(
            standing(reference.resolution), [&] { return import_resolved(reference.target_path); },
            [&] { return is_name_match_kind(reference.target_kind); });
    };
}

}  // namespace wiki::scope
