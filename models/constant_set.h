// A set of texts that is known when the program is compiled: the names of resolutions and of kinds.
#pragma once

#include "utils/language_version.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <string_view>

namespace models {

/// An immutable set of a few texts. It is a constant expression, so it can be read while other objects are still
/// being initialised. Iteration is in the order in which the members were written.
template <std::size_t N>
class ConstantSet {
  public:
    template <std::convertible_to<std::string_view>... Member>
    requires(sizeof...(Member) == N) constexpr explicit ConstantSet(const Member&... members) : members_{members...} {}

    /// Exact, case-sensitive equality with a member. Cost: one comparison per member.
    [[nodiscard]] constexpr bool contains(std::string_view text) const {
        return std::find(members_.begin(), members_.end(), text) != members_.end();
    }

    [[nodiscard]] constexpr auto begin() const { return members_.begin(); }
    [[nodiscard]] constexpr auto end() const { return members_.end(); }

  private:
    std::array<std::string_view, N> members_;
};

template <class... Member>
ConstantSet(const Member&...) -> ConstantSet<sizeof...(Member)>;

}  // namespace models
