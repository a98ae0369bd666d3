// Lists of integers as ranges.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace host {

/// First and last of every run of integers that follow one another, ascending: 7, 1, 2, 3, 2 gives (1, 3), (7, 7).
std::vector<std::pair<std::int64_t, std::int64_t>> ranges_of(std::vector<std::int64_t> integers);

}  // namespace host
