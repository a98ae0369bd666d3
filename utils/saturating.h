// Integer arithmetic that stops at the ends of the range instead of overflowing.
#pragma once

#include <cstdint>
#include <limits>

namespace utils {

/// left + right, or the nearest 64-bit integer when the sum is beyond them.
constexpr std::int64_t saturating_sum(std::int64_t left, std::int64_t right) {
    using Limits = std::numeric_limits<std::int64_t>;
    if (right > 0 && left > Limits::max() - right) {
        return Limits::max();
    }
    if (right < 0 && left < Limits::min() - right) {
        return Limits::min();
    }
    return left + right;
}

/// -value, or the nearest 64-bit integer: only the smallest one has no negation.
constexpr std::int64_t saturating_negation(std::int64_t value) {
    using Limits = std::numeric_limits<std::int64_t>;
    return value == Limits::min() ? Limits::max() : -value;
}

}  // namespace utils
