// Meanings that were found out, by key.
#pragma once

#include "host/resolve/meaning.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace host::resolve {

/// A hash table whose meanings lie one behind the other, since looking one up is the most frequent step of resolving
/// names. Most are one entity.
class MeaningTable {
  public:
    /// Returns the meaning that was added for a key; none where there is none. Valid until `add` or `clear`.
    [[nodiscard]] std::optional<std::span<const Entity>> find(std::uint64_t key) const;

    /// Adds a meaning for a key that has none.
    void add(std::uint64_t key, const Meaning& meaning);

    [[nodiscard]] std::size_t size() const { return size_; }

    void clear();

  private:
    struct Slot {
        std::uint64_t key = 0;
        std::uint32_t first = FREE;  // of its entities
        std::uint32_t count = 0;
    };

    [[nodiscard]] std::size_t slot_of(std::uint64_t key) const;
    void grow();

    static constexpr std::uint32_t FREE = 0xFFFF'FFFF;
    std::vector<Slot> slots_ = std::vector<Slot>(64);  // a power of two, at most two thirds of them taken
    std::vector<Entity> entities_;
    std::size_t size_ = 0;
};

}  // namespace host::resolve
