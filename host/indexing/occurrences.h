// How often something occurs in a file.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace host::indexing {

/// Tokens of one file, and the first line on which one of them stands. Small, as an import keeps one for each name that
/// a file refers to.
struct Occurrences {
    std::uint32_t count = 0;      ///< stops at its largest value
    std::int32_t first_line = 0;  ///< 1-based; of the tokens whose line is known, 0 where none is

    void add(const Occurrences& more) {
        count += std::min(more.count, std::numeric_limits<std::uint32_t>::max() - count);
        const bool is_earlier = first_line == 0 || (more.first_line != 0 && more.first_line < first_line);
        first_line = is_earlier ? more.first_line : first_line;
    }

    friend bool operator==(const Occurrences&, const Occurrences&) = default;
};

}  // namespace host::indexing
