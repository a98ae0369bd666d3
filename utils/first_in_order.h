// The first few of many elements, without sorting them all.
#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <vector>

namespace utils {

/// The first `limit` of some elements in the order of `compare`, a three-way comparison; those that it finds equal in
/// their given order. `elements` lie side by side; the result points to them.
template <class Elements, class Compare>
auto first_in_order(const Elements& elements, std::size_t limit, Compare compare) {
    std::vector<decltype(&*elements.begin())> order;
    order.reserve(elements.size());
    for (const auto& element : elements) {
        order.push_back(&element);
    }
    const auto last = order.begin() + static_cast<std::ptrdiff_t>(std::min(limit, order.size()));
    std::partial_sort(order.begin(), last, order.end(), [&](const auto* left, const auto* right) {
        const auto relation = compare(*left, *right);
        return std::is_eq(relation) ? left < right : std::is_lt(relation);
    });
    order.erase(last, order.end());
    return order;
}

}  // namespace utils
