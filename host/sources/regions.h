// Regions of a text, looked up by position.
#pragma once

#include "host/sources/captures.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace host::sources {

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

    /// Those that no other holds, in order.
    [[nodiscard]] std::span<const Bytes> outermost() const { return outermost_; }

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

    /// Where the parts begin that nothing but blanks separates from the offset, or else the offset itself.
    [[nodiscard]] std::uint32_t begin_of_run_above(std::uint32_t offset, std::string_view text) const {
        const Bytes* last = last_before(offset);
        while (last != nullptr && trimmed(text.substr(last->end, offset - last->end)).empty()) {
            offset = last->begin;
            last = last_before(offset);
        }
        return offset;
    }

    [[nodiscard]] std::span<const Bytes> all() const { return parts_; }

    /// Those that begin and end within a part of the text, in order.
    [[nodiscard]] std::span<const Bytes> within(Bytes whole) const {
        const auto begin = std::ranges::lower_bound(parts_, whole.begin, {}, &Bytes::begin);
        const auto end = std::ranges::upper_bound(begin, parts_.end(), whole.end, {}, &Bytes::end);
        return {begin, end};
    }

  private:
    std::vector<Bytes> parts_;
};

}  // namespace host::sources
