// Which declarations of a page it can afford to show, and which names get a deeper treatment.
#pragma once

#include "workers/wiki/scope/ranked_files.h"

#include <cstdint>
#include <span>
#include <vector>

namespace wiki::scope {

/// Chooses up to `total` declarations of `ranked` (each list best first, as `ranked_by_file` makes it):
///
///   1. Each file gets its best `floor` declarations, but no more than total / files of them, and at least one.
///      Files are served by the rank of their best declaration, then by path, until nothing is left of `total`.
///   2. The rest goes by rank (then path) across the files, no file growing beyond max_share of `total`, rounded up,
///      or its floor, if that is more.
///   3. What is left then goes by rank to the files that the share held back.
///
/// The result lists every file's first chosen declaration by rank (then path), then every file's second, and so on:
/// cutting its tail takes the least from each file. It does not depend on the order of the files in `ranked`. Its cost
/// grows with the files and with what is chosen of them, n log n, however large `total` is. A share that is negative or
/// no number counts as 0; an infinite one bounds nothing.
std::vector<const ScopeSymbol*> select_with_quota(const RankedFiles& ranked, const FanIn& fan_in, std::int64_t total,
                                                  std::int64_t floor, double max_share);

/// The name of a declaration, and its file.
struct NamedPath {
    Text name;
    Text path;
    friend bool operator==(const NamedPath&, const NamedPath&) = default;
};

/// The first `limit` names of `scored` (best first), at most `per_file` of any one path, in the given order. Names
/// are not compared: one that stands twice can be picked twice. None when either number is 0 or negative.
std::vector<Text> pick_spread(std::span<const NamedPath> scored, std::int64_t limit, std::int64_t per_file);

}  // namespace wiki::scope
