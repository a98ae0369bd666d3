// The declarations of other files that a page uses, and the references that only look like uses.
#pragma once

#include "workers/wiki/scope/facts.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace wiki::scope {

/// A declaration in another file that the page uses.
struct Neighbour {
    const ScopeSymbol* target;  ///< a record of the `ScopeFacts`, and lives as long
    std::int64_t refs;
    friend bool operator==(const Neighbour&, const Neighbour&) = default;
};

/// The production declarations in other files that the page uses most, by their references, most first; equal counts
/// by fully qualified name, then in the order of `facts.outbound`. At most `limit`; none when it is 0 or negative.
/// uses.h says which references count. Where records of several declarations have one id, theirs is one count, and the
/// record is that of the last reference that counts. A count that would go beyond 64 bits stops at their ends. Calls
/// `is_test_path`, whose failures pass unchanged to the caller.
std::vector<Neighbour> neighbours(const ScopeFacts& facts, std::int64_t limit);
std::vector<Neighbour> neighbours(const ScopeFacts&& facts, std::int64_t limit) = delete;  // would dangle

/// The file of a reference, and the file of its target.
struct FilePair {
    Text source_path;
    Text target_path;
    friend bool operator==(const FilePair&, const FilePair&) = default;
};

/// The references that only match the name of an attribute or a constant ("unique" ones), by the pair of their files,
/// whether tests or not: first those of `facts.inbound`, then those of `facts.outbound`, each in order. A count that
/// would go beyond 64 bits stops at their ends.
OrderedMap<FilePair, std::int64_t> name_match_counts(const ScopeFacts& facts);

}  // namespace wiki::scope

template <>
struct std::hash<wiki::scope::FilePair> {
    std::size_t operator()(const wiki::scope::FilePair& pair) const noexcept {
        return (std::uint64_t{pair.source_path.hash()} << 32U) ^ pair.target_path.hash();
    }
};
