// Who uses the code of a page from outside, and what of it nobody outside uses.
//
// A consumer is a production file outside the page that makes a reference to it which `is_use` (fan_in.h) counts. Where
// the indexer resolves no imports for a language of the page, the consumers are likely ones, known by name only.
#pragma once

#include "models/excerpt.h"
#include "workers/wiki/scope/facts.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace wiki::scope {

/// The short name of one or more declarations of the page, and the references that a consumer makes to them.
struct UsedName {
    Text name;
    std::int64_t references = 0;
    friend bool operator==(const UsedName&, const UsedName&) = default;
};

/// A consumer of the page.
struct Consumer {
    Text path;
    std::int64_t references = 0;  ///< to all its names
    models::Excerpt<UsedName> names =
        {};  ///< four at most; most references first, equal counts in the order of first use
    friend bool operator==(const Consumer&, const Consumer&) = default;
};

/// The references of one resolution that do not count.
struct UncountedReferences {
    Text resolution;
    std::int64_t references = 0;
    friend bool operator==(const UncountedReferences&, const UncountedReferences&) = default;
};

/// What references that `is_use` does not count say of their targets.
enum class Unproven : std::uint8_t {
    SAYS_NOTHING,
    MAY_BE_USE,  ///< so that the target is not listed as unused
};

/// How production code outside a page uses the page. Counts that would go beyond 64 bits stop at their ends.
struct Consumers {
    /// Twelve at most; most references first, equal counts in path order.
    models::Excerpt<Consumer> files = {};

    /// The references from production files outside the page that `is_use` does not count, by resolution, in its order.
    std::vector<UncountedReferences> uncounted = {};
    std::size_t uncounted_files = 0;  ///< the files that make them

    /// The exported, public, top-level types and callables that no consumer uses or, where `Unproven` has it so, may use.
    /// Eight at most; types first, then by `rank_key`, then by path, then in the order of `facts.symbols`. They are
    /// records of the `ScopeFacts`, and live as long.
    models::Excerpt<const ScopeSymbol*> unused = {};

    /// The languages of the page whose imports are not resolved, in order; an empty one for the files without a
    /// language.
    std::vector<Text> unresolved_languages = {};

    friend bool operator==(const Consumers&, const Consumers&) = default;
};

/// The consumers of a page. `fan_in` is the page's.
Consumers consumers(const ScopeFacts& facts, const FanIn& fan_in, Unproven unproven = Unproven::SAYS_NOTHING);
Consumers consumers(const ScopeFacts&& facts, const FanIn& fan_in,
                    Unproven unproven = Unproven::SAYS_NOTHING) = delete;  // the result would dangle

}  // namespace wiki::scope
