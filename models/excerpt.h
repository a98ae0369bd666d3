// The beginning of a list that is too long to be shown.
#pragma once

#include "utils/language_version.h"

#include <cstddef>
#include <vector>

namespace models {

/// The first few elements of a list, in its order, and how many the whole list has.
template <class Element>
struct Excerpt {
    std::vector<Element> shown = {};
    std::size_t total = 0;  ///< elements of the list; at least as many as are shown

    [[nodiscard]] std::size_t left_out() const { return total - shown.size(); }

    friend bool operator==(const Excerpt&, const Excerpt&) = default;
};

}  // namespace models
