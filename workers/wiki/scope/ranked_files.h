// The declarations of each file of a page, those that matter most first, and the lines by which a file is cited.
#pragma once

#include "workers/wiki/scope/facts.h"

#include <compare>
#include <cstdint>
#include <vector>

namespace wiki::scope {

/// The sort key of a declaration; the smaller, the better. Compared element by element, false before true. A count c
/// from outside or inside stands as -2c, that of a constant as -c: its uses weigh half.
///
///   declaration                                                        key
///   an exported class on lines 10 to 50, 3 uses from outside           (false, 0, false, -6, -40, 0, 10)
///   a constant on line 7, 5 uses from outside, 2 inside                (false, 1, false, -5, 0, -2, 7)
///   a private function on lines 5 to 99 that only the page uses, once  (true, 0, true, 0, -40, -2, 5)
struct RankKey {
    bool is_internal = false;     ///< not part of what the page offers (`FanIn::api`)
    int kind_group = 0;           ///< 0 for callables and types, 1 for other kinds
    bool is_private = false;      ///< the name begins with "_"
    std::int64_t outside = 0;     ///< negated weighted uses from outside the page
    std::int64_t size = 0;        ///< negated last line less first line, 40 at the most
    std::int64_t inside = 0;      ///< negated weighted uses from the page's own files
    std::int64_t start_line = 0;  ///< the first line

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const RankKey&, const RankKey&) = default;
};

/// Counts that are beyond 64 bits when doubled stop at their ends.
RankKey rank_key(const ScopeSymbol& symbol, const FanIn& fan_in);

/// Path -> declarations, which are records of the `ScopeFacts` they were ranked from and live as long.
using RankedFiles = OrderedMap<Text, std::vector<const ScopeSymbol*>>;

/// The declarations of each file by `rank_key`, best first; equal keys in the order of `facts.symbols`. The files in
/// the order in which they first appear there; files without declarations are absent.
RankedFiles ranked_by_file(const ScopeFacts& facts, const FanIn& fan_in);
RankedFiles ranked_by_file(const ScopeFacts&& facts,
                           const FanIn& fan_in) = delete;  // the result would dangle

/// Lines of a file: 1-based, both inclusive, `last` at least `first`.
struct LineRange {
    std::int64_t first = 0;
    std::int64_t last = 0;
    friend bool operator==(const LineRange&, const LineRange&) = default;
};

/// A citable range for each file: that of its best-ranked declaration on a line of the file (line 1 or later). Files
/// seeded so come first, in the order of `ranked_by_file`; then, in the order of `facts.files`, those of the others
/// that have lines, whole: files without declarations, and those whose declarations all stand before line 1. An empty
/// or unread one of these has none.
OrderedMap<Text, LineRange> file_seeds(const ScopeFacts& facts, const FanIn& fan_in);

}  // namespace wiki::scope
