#include "host/scip/lines_of_range.h"

#include <algorithm>
#include <limits>

namespace host::scip {

indexing::LineSpan lines_of(const Range& range) {
    constexpr std::int32_t LAST_LINE = std::numeric_limits<std::int32_t>::max() - 1;
    const bool ends_before_its_last_line = range.end_line > range.start_line && range.end_column == 0;
    const std::int32_t end = ends_before_its_last_line ? range.end_line - 1 : range.end_line;
    const std::int32_t first = std::clamp(range.start_line, 0, LAST_LINE);
    const std::int32_t last = std::clamp(end, first, LAST_LINE);
    return {first + 1, last + 1};
}

}  // namespace host::scip
