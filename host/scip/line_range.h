// The lines of a source file that something takes up.
#pragma once

#include "host/scip/reader.h"

#include <cstdint>

namespace host::scip {

/// Lines of a file, 1-based, both inclusive; `last` is never before `first`.
struct LineRange {
    std::int32_t first = 1;
    std::int32_t last = 1;

    [[nodiscard]] std::int32_t count() const { return last - first + 1; }

    friend bool operator==(const LineRange&, const LineRange&) = default;
};

/// The lines that a range takes in. A half-open end at the beginning of a later line ends on the line before. Whatever
/// the range says, the result lies between 1 and the greatest line that there can be.
LineRange lines_of(const Range& range);

}  // namespace host::scip
