#include "host/index/ranges.h"

#include <algorithm>

namespace host {

std::vector<std::pair<std::int64_t, std::int64_t>> ranges_of(std::vector<std::int64_t> integers) {
    std::ranges::sort(integers);
    std::vector<std::pair<std::int64_t, std::int64_t>> ranges;
    for (const std::int64_t integer : integers) {
        if (ranges.empty() || (integer != ranges.back().second && integer - 1 != ranges.back().second)) {
            ranges.emplace_back(integer, integer);
        }
        ranges.back().second = integer;
    }
    return ranges;
}

}  // namespace host
