// What counts as a use. Everything that counts references asks the rules below.
//
// A rule goes by the resolution of a reference and, unless the indexer followed the name to its declaration, by the
// kind of the target: the short names of attributes and constants (`NAME_MATCH_KINDS`) collide with unrelated accesses.
//
//   who asks            local, import   unique       legacy   any other   of references from
//   is_use              yes             unproven *   no       no          any file
//   file_users          as is_use                                         other production files
//   consumers, unused   as is_use                                         production files outside the page
//   production_fan_in   yes             yes *        no       no          production files
//     entry points      reached         reached      no       reached     production files
//   neighbours          yes             yes *        yes *    yes *       the page to production files outside it
//   name_match_counts   no              only +       no       no          any file
//
//   unproven   where the indexer does not resolve imports for the language of the target's file
//   *          unless the target is an attribute or a constant
//   only +     where the target is an attribute or a constant
#pragma once

#include "utils/language_version.h"

#include <cstdint>
#include <string_view>

namespace wiki::scope {

/// Kinds of targets.
enum class TargetKinds : std::uint8_t {
    NONE,
    NAME_MATCH,  ///< those of `NAME_MATCH_KINDS`
    OTHER,       ///< all but those
    ALL,
};

/// A column of the table: for which targets the references of one resolution count.
struct UseRules {
    bool is_evidence = false;                    ///< they prove a use, whatever the target
    TargetKinds likely_use = TargetKinds::NONE;  ///< for `is_use` where imports are not resolved, and the fan-in
    TargetKinds neighbour = TargetKinds::NONE;
    TargetKinds name_match = TargetKinds::NONE;
    bool reaches_target = false;  ///< they keep the target from being an entry point
    friend bool operator==(const UseRules&, const UseRules&) = default;
};

/// The rules for a resolution; the last column for one that is not known.
UseRules use_rules(std::string_view resolution);

/// `NAME_MATCH` or `OTHER`.
TargetKinds kinds_of(std::string_view target_kind);

/// Whether `target_kind` is one of `kinds`.
inline bool includes(TargetKinds kinds, std::string_view target_kind) {
    return kinds == TargetKinds::ALL || kinds == kinds_of(target_kind);
}

/// Whether a reference is evidence that its source uses its target. `import_resolved` tells whether the indexer
/// resolves imports for the language of the target's file. Where it does not, every reference across files is a match
/// of names, and a "unique" one (to the only production declaration of the name) is the best there is.
bool is_use(std::string_view resolution, std::string_view target_kind, bool import_resolved);

}  // namespace wiki::scope
