#include "host/resolve/meaning_table.h"

#include <utility>

namespace host::resolve {

std::optional<std::span<const Entity>> MeaningTable::find(std::uint64_t key) const {
    const Slot& slot = slots_[slot_of(key)];
    return slot.first == FREE ? std::nullopt : std::optional(std::span(entities_).subspan(slot.first, slot.count));
}

void MeaningTable::add(std::uint64_t key, const Meaning& meaning) {
    if (3 * (size_ + 1) > 2 * slots_.size()) {
        grow();
    }
    slots_[slot_of(key)] = {key, static_cast<std::uint32_t>(entities_.size()),
                            static_cast<std::uint32_t>(meaning.size())};
    entities_.insert(entities_.end(), meaning.begin(), meaning.end());
    ++size_;
}

void MeaningTable::clear() {
    *this = MeaningTable();
}

// Where the meaning of a key stands, or else is to stand: the first such slot from the one that its hash gives.
std::size_t MeaningTable::slot_of(std::uint64_t key) const {
    constexpr std::uint64_t SPREAD = 0x9E37'79B9'7F4A'7C15;  // 2^64 divided by the golden ratio: neighbours part
    const std::uint64_t hash = key * SPREAD;
    std::size_t slot = (hash ^ (hash >> 32U)) % slots_.size();
    while (slots_[slot].first != FREE && slots_[slot].key != key) {
        slot = (slot + 1) % slots_.size();
    }
    return slot;
}

void MeaningTable::grow() {
    const std::vector<Slot> before = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
    for (const Slot& slot : before) {
        if (slot.first != FREE) {
            slots_[slot_of(slot.key)] = slot;
        }
    }
}

}  // namespace host::resolve
