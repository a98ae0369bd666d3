// A range of lines in a source file.
#pragma once

#include <cstdint>

namespace host::indexing {

/// Lines of a file, 1-based, both inclusive; `last` is never before `first`.
struct LineSpan {
    std::int32_t first = 1;
    std::int32_t last = 1;

    [[nodiscard]] std::int32_t count() const { return last - first + 1; }

    friend bool operator==(const LineSpan&, const LineSpan&) = default;
};

}  // namespace host::indexing
