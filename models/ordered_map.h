// Mappings that remember the order in which their keys were first inserted.
//
// Every mapping that this component returns or shows lists its keys in that order, whatever the hash function of the
// platform. The entries lie side by side in one array, in insertion order; a second array of small slots finds an
// entry by its key. Counting a million references thus allocates a few arrays, not a node for each key.
#pragma once

#include "models/text.h"
#include "utils/first_in_order.h"
#include "utils/saturating.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace models {

/// How the mappings hash their keys. Texts can be looked up by any characters.
template <class Key>
using KeyHash = std::conditional_t<std::is_same_v<Key, Text>, TextHash, std::hash<Key>>;

/// A mapping from keys to values. Iteration yields the entries, each with `key` and `value`, in the order in which
/// the keys were first inserted; no key is ever removed. References to values and iterators stay valid until the next
/// insertion or `reserve`. A `const OrderedMap` may be read by any number of threads at once. Looking up and inserting
/// take constant time on average. Throws `std::length_error` beyond 3 * 2^30 keys; where memory runs out, the mapping
/// is as it was.
template <class Key, class Value>
class OrderedMap {
  public:
    struct Entry {
        Key key;
        [[no_unique_address]] Value value{};
        friend bool operator==(const Entry&, const Entry&) = default;
    };

    OrderedMap() = default;

    /// The entries in their given order; of two with one key the later value stays, at the earlier place.
    OrderedMap(std::initializer_list<Entry> entries) {
        reserve(entries.size());
        for (const Entry& entry : entries) {
            (*this)[entry.key] = entry.value;
        }
    }

    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
    [[nodiscard]] bool empty() const noexcept { return entries_.empty(); }
    [[nodiscard]] auto begin() const noexcept { return entries_.begin(); }
    [[nodiscard]] auto end() const noexcept { return entries_.end(); }

    /// The value of `key`, or null when it has none.
    template <class Like>
    [[nodiscard]] const Value* find(const Like& key) const {
        const std::size_t place = place_of(key, short_hash(key));
        return place == NONE ? nullptr : &entries_[place].value;
    }

    template <class Like>
    [[nodiscard]] bool contains(const Like& key) const {
        return find(key) != nullptr;
    }

    /// The value of `key`, or `otherwise` when it has none.
    template <class Like>
    [[nodiscard]] Value get(const Like& key, Value otherwise) const {
        const Value* value = find(key);
        return value == nullptr ? std::move(otherwise) : *value;
    }

    /// The value of `key`; a missing key is added at the end first, with `Value()`.
    Value& operator[](const Key& key) { return find_or_add(key).first; }

    /// The value of `key` and whether the key is new: then it was added at the end, with `Value()`.
    std::pair<Value&, bool> find_or_add(const Key& key) {
        const std::uint32_t hash = short_hash(key);
        if (const std::size_t place = place_of(key, hash); place != NONE) {
            return {entries_[place].value, false};
        }
        if (entries_.size() >= capacity()) {
            rebuild(entries_.size() + 1);
        }
        entries_.push_back({key, Value()});
        occupy(hash, static_cast<std::uint32_t>(entries_.size()));
        return {entries_.back().value, true};
    }

    /// Calls `change` with each value, in order.
    template <class Change>
    void update_each(Change change) {
        for (Entry& entry : entries_) {
            change(entry.value);
        }
    }

    /// Makes room for `count` keys.
    void reserve(std::size_t count) {
        if (count > capacity()) {
            rebuild(count);
        }
        entries_.reserve(count);
    }

    /// Equal entries in equal order.
    friend bool operator==(const OrderedMap& left, const OrderedMap& right) { return left.entries_ == right.entries_; }

  private:
    // Open addressing with linear probing. A slot keeps the hash of its key, so that most keys that are not sought
    // are passed over, and the slots laid out anew, without a look at the entries.
    struct Slot {
        std::uint32_t position = 0;  // of the entry, counted from 1; 0 when the slot is free
        std::uint32_t hash = 0;
    };

    static constexpr std::size_t NONE = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t SMALLEST = 8;
    static constexpr std::size_t MOST_KEYS = std::size_t{3} << 30U;  // three quarters of 2^32 slots

    // Spreads the hash (of an integer it may be the integer itself) over its upper 32 bits: multiplied once, the high
    // bits of an integer would have no part in the low ones.
    template <class Like>
    static std::uint32_t short_hash(const Like& key) {
        constexpr std::uint64_t GOLDEN_RATIO = 0x9E3779B97F4A7C15U;  // 2^64 / phi: multiplicative hashing
        const std::uint64_t once = std::uint64_t{KeyHash<Key>{}(key)} * GOLDEN_RATIO;
        return static_cast<std::uint32_t>(((once ^ (once >> 32U)) * GOLDEN_RATIO) >> 32U);
    }

    // The slot at which the search for a hash begins: the upper bits are the ones spread best.
    [[nodiscard]] std::size_t home(std::uint32_t hash) const { return hash >> shift_; }
    [[nodiscard]] std::size_t next(std::size_t slot) const { return (slot + 1) & (slots_.size() - 1); }

    // A quarter of the slots stays free.
    [[nodiscard]] std::size_t capacity() const { return slots_.size() - slots_.size() / 4; }

    template <class Like>
    [[nodiscard]] std::size_t place_of(const Like& key, std::uint32_t hash) const {
        if (slots_.empty()) {
            return NONE;
        }
        for (std::size_t at = home(hash); slots_[at].position != 0; at = next(at)) {
            const std::size_t place = slots_[at].position - 1;
            if (slots_[at].hash == hash && entries_[place].key == key) {
                return place;
            }
        }
        return NONE;
    }

    void occupy(std::uint32_t hash, std::uint32_t position) {
        std::size_t at = home(hash);
        while (slots_[at].position != 0) {
            at = next(at);
        }
        slots_[at] = {position, hash};
    }

    // Lays the slots out anew, with room for `count` keys.
    void rebuild(std::size_t count) {
        if (count > MOST_KEYS) {
            throw std::length_error("an ordered map holds at most 3 * 2^30 keys");
        }
        std::vector<Slot> old(std::max(SMALLEST, std::bit_ceil((4 * count + 2) / 3)));
        slots_.swap(old);  // what can throw is done
        shift_ = 32 - std::countr_zero(slots_.size());
        for (const Slot& slot : old) {
            if (slot.position != 0) {
                occupy(slot.hash, slot.position);
            }
        }
    }

    std::vector<Entry> entries_;
    std::vector<Slot> slots_;  // none, or a power of two
    int shift_ = 0;            // 32 less the logarithm of that power
};

/// Counts by key: a missing key reads 0, and adding to it creates it at the end. A count that would go beyond 64 bits
/// stops at their end, from where later amounts lead back: 2^63 - 1, then 1, then -1 give 2^63 - 2.
template <class Key>
class Counter : public OrderedMap<Key, std::int64_t> {
  public:
    using Entry = typename OrderedMap<Key, std::int64_t>::Entry;

    using OrderedMap<Key, std::int64_t>::OrderedMap;

    /// The count of `key`; reading creates no entry.
    template <class Like>
    [[nodiscard]] std::int64_t operator[](const Like& key) const {
        const std::int64_t* count = this->find(key);
        return count == nullptr ? 0 : *count;
    }

    /// Adds `amount`, which may be 0 or negative.
    void add(const Key& key, std::int64_t amount) {
        std::int64_t& count = this->find_or_add(key).first;
        count = utils::saturating_sum(count, amount);
    }

    /// The first `limit` entries by count, highest first, equal counts in insertion order; all by default.
    [[nodiscard]] std::vector<Entry> most_common(std::size_t limit = ALL) const {
        const auto by_count = [](const Entry& left, const Entry& right) { return right.value <=> left.value; };
        std::vector<Entry> entries;
        for (const Entry* entry : utils::first_in_order(*this, limit, by_count)) {
            entries.push_back(*entry);
        }
        return entries;
    }

  private:
    static constexpr std::size_t ALL = std::numeric_limits<std::size_t>::max();
};

/// A set of keys. Iteration yields them in the order in which they were first inserted; the iterators stay valid until
/// the next insertion or `reserve`.
template <class Key>
class OrderedSet {
    struct Nothing {
        friend bool operator==(const Nothing&, const Nothing&) = default;
    };
    using Keys = OrderedMap<Key, Nothing>;

  public:
    class Iterator {
      public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Key;
        using difference_type = std::ptrdiff_t;
        using pointer = const Key*;
        using reference = const Key&;

        Iterator() = default;
        explicit Iterator(decltype(std::declval<const Keys&>().begin()) at) : at_(at) {}

        reference operator*() const { return at_->key; }
        pointer operator->() const { return &at_->key; }
        Iterator& operator++() {
            ++at_;
            return *this;
        }
        Iterator operator++(int) { return Iterator(at_++); }
        friend bool operator==(const Iterator&, const Iterator&) = default;

      private:
        decltype(std::declval<const Keys&>().begin()) at_{};
    };

    OrderedSet() = default;
    OrderedSet(std::initializer_list<Key> keys) {
        for (const Key& key : keys) {
            insert(key);
        }
    }

    /// Adds `key` at the end if it is not a member yet; tells whether it was added.
    bool insert(const Key& key) { return keys_.find_or_add(key).second; }

    template <class Like>
    [[nodiscard]] bool contains(const Like& key) const {
        return keys_.contains(key);
    }

    [[nodiscard]] std::size_t size() const noexcept { return keys_.size(); }
    [[nodiscard]] bool empty() const noexcept { return keys_.empty(); }
    [[nodiscard]] Iterator begin() const noexcept { return Iterator(keys_.begin()); }
    [[nodiscard]] Iterator end() const noexcept { return Iterator(keys_.end()); }
    void reserve(std::size_t count) { keys_.reserve(count); }

    /// Equal keys in equal order.
    friend bool operator==(const OrderedSet&, const OrderedSet&) = default;

  private:
    Keys keys_;
};

using TextSet = OrderedSet<Text>;

}  // namespace models
