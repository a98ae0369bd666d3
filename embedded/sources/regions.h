// Parts of a text, to be asked for by place.
#pragma once

#include "embedded/sources/captures.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace embedded::sources {

/// Regions of a text, of which any two are nested or apart.
class Regions {
  public:
    explicit Regions(std::vector<Bytes> regions) : outermost_(std::move(regions)) {
        std::ranges::sort(outermost_);
        std::uint32_t end = 0;
        std::erase_if(outermost_,
                      [&](const Bytes& region) { return region.end <= std::exchange(end, std::max(end, region.end)); });
    }

    [[nodiscard]] bool contain(std::uint32_t offset) const {
        const auto after = std::ranges::upper_bound(outermost_, offset, {}, &Bytes::begin);
        return after != outermost_.begin() && offset < std::prev(after)->end;
    }

  private:
    std::vector<Bytes> outermost_;
};

/// Parts of a text that do not overlap.
class Parts {
  public:
    explicit Parts(std::vector<Bytes> parts) : parts_(std::move(parts)) { std::ranges::sort(parts_); }

    /// The last one that ends at the offset or before it; null when there is none.
    [[nodiscard]] const Bytes* last_before(std::uint32_t offset) const {
        const auto after = std::ranges::upper_bound(parts_, offset, {}, &Bytes::end);
        return after == parts_.begin() ? nullptr : &*std::prev(after);
    }

  private:
    std::vector<Bytes> parts_;
};

}  // namespace embedded::sources
