// Numbers by the elements that they number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace host::syntax {

/// A hash table of the numbers alone, from 0 in the order in which they were given. The elements lie elsewhere, one
/// behind the other: nodes of a standard table would take several times the memory, and each an allocation.
class NumberTable {
  public:
    /// Returns the number of the element with this hash of which `is_it(number)` holds, if there is one.
    template <class IsIt>
    [[nodiscard]] std::optional<std::uint32_t> find(std::size_t hash, const IsIt& is_it) const {
        const std::uint32_t number = slots_[slot_of(hash, is_it)];
        return number == FREE ? std::nullopt : std::optional(number);
    }

    /// The same; gives an element that has no number the next one. Returns the number, and whether it is new.
    /// `hash_of(number)` is asked for elements that have one.
    template <class IsIt, class HashOf>
    std::pair<std::uint32_t, bool> number(std::size_t hash, const IsIt& is_it, const HashOf& hash_of) {
        std::size_t slot = slot_of(hash, is_it);
        if (slots_[slot] != FREE) {
            return {slots_[slot], false};
        }
        if (3 * (std::size_t{count_} + 1) > 2 * slots_.size()) {
            grow(hash_of);
            slot = slot_of(hash, is_it);
        }
        slots_[slot] = count_;
        return {count_++, true};
    }

  private:
    // Where the number of an element stands, or else is to stand: the first such slot from the one that its hash gives.
    template <class IsIt>
    [[nodiscard]] std::size_t slot_of(std::size_t hash, const IsIt& is_it) const {
        std::size_t slot = hash % slots_.size();
        while (slots_[slot] != FREE && !is_it(slots_[slot])) {
            slot = (slot + 1) % slots_.size();
        }
        return slot;
    }

    template <class HashOf>
    void grow(const HashOf& hash_of) {
        slots_.assign(2 * slots_.size(), FREE);
        for (std::uint32_t number = 0; number < count_; ++number) {
            slots_[slot_of(hash_of(number), [](std::uint32_t) { return false; })] = number;
        }
    }

    static constexpr std::uint32_t FREE = 0xFFFF'FFFF;
    std::vector<std::uint32_t> slots_ = std::vector(64, FREE);  // a power of two, at most two thirds of them taken
    std::uint32_t count_ = 0;
};

}  // namespace host::syntax
