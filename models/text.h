// Immutable shared text.
//
// A page of a core header has a million references between a few thousand distinct paths, names and kinds. A record
// of `std::string` would hold each of them again; a record of `Text` holds one pointer to the shared characters,
// compares two copies of one text by that pointer, and never hashes a text twice.
#pragma once

#include "utils/language_version.h"

#include <atomic>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string_view>
#include <utility>

namespace models {

/// An immutable text. Copies share one buffer, which lives as long as the last of them; equality and order are those
/// of the bytes, which for UTF-8 is code-point order. Any number of threads may read and copy one `Text` at once. A
/// moved-from `Text` is empty.
class Text {
  public:
    /// The empty text; it needs no buffer.
    Text() noexcept = default;

    /// A text with a buffer of its own, holding a copy of `characters`. Throws `std::bad_alloc`, and
    /// `std::length_error` when there are 2^32 characters or more.
    template <std::convertible_to<std::string_view> Characters>
    requires(!std::same_as<Characters, Text>) Text(const Characters& characters) : buffer_(make_buffer(characters)) {}

    Text(const Text& other) noexcept : buffer_(other.buffer_) {
        if (buffer_ != nullptr) {
            buffer_->owners.fetch_add(1, std::memory_order_relaxed);
        }
    }
    Text(Text&& other) noexcept : buffer_(std::exchange(other.buffer_, nullptr)) {}
    Text& operator=(const Text& other) noexcept { return *this = Text(other); }
    Text& operator=(Text&& other) noexcept {
        Text taken(std::move(other));
        std::swap(buffer_, taken.buffer_);
        return *this;
    }
    ~Text() {
        if (buffer_ != nullptr && buffer_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            destroy(buffer_);
        }
    }

    /// The characters, valid while any copy of this text lives.
    [[nodiscard]] std::string_view view() const noexcept {
        return buffer_ == nullptr ? std::string_view() : std::string_view(buffer_->characters, buffer_->size);
    }
    operator std::string_view() const noexcept { return view(); }

    [[nodiscard]] bool empty() const noexcept { return buffer_ == nullptr; }

    /// `hash_of` the characters, computed once, when the buffer was made.
    [[nodiscard]] std::uint32_t hash() const noexcept { return buffer_ == nullptr ? hash_of({}) : buffer_->hash; }

    /// Whether both are copies of one text. True implies equal; equal texts that were made apart give false.
    [[nodiscard]] bool same_buffer(const Text& other) const noexcept { return buffer_ == other.buffer_; }

    /// The address of the shared buffer: equal for two texts just when `same_buffer` is true. Null when empty.
    [[nodiscard]] const void* identity() const noexcept { return buffer_; }

    [[nodiscard]] static std::uint32_t hash_of(std::string_view characters) noexcept {
        return static_cast<std::uint32_t>(std::hash<std::string_view>{}(characters));
    }

    friend bool operator==(const Text& left, const Text& right) noexcept {
        return left.same_buffer(right) || (left.hash() == right.hash() && left.view() == right.view());
    }
    friend std::strong_ordering operator<=>(const Text& left, const Text& right) noexcept {
        return left.same_buffer(right) ? std::strong_ordering::equal : left.view() <=> right.view();
    }

    // Characters of any other type compare without being copied into a text first.
    template <std::convertible_to<std::string_view> Characters>
    requires(!std::same_as<Characters, Text>) friend bool operator==(const Text& left,
                                                                     const Characters& right) noexcept {
        return left.view() == std::string_view(right);
    }
    template <std::convertible_to<std::string_view> Characters>
    requires(!std::same_as<Characters, Text>) friend std::strong_ordering
    operator<=>(const Text& left, const Characters& right) noexcept {
        return left.view() <=> std::string_view(right);
    }

  private:
    // The head of one allocation; the characters stand right behind it. Never empty.
    struct Buffer {
        std::atomic<std::size_t> owners;
        const char* characters;
        std::uint32_t size;
        std::uint32_t hash;
    };

    static Buffer* make_buffer(std::string_view characters);
    static void destroy(Buffer* buffer) noexcept;

    Buffer* buffer_ = nullptr;
};

/// Writes the characters.
std::ostream& operator<<(std::ostream& out, const Text& text);

/// Hashes texts and plain characters alike, so that a container of texts can be searched with either.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(const Text& text) const noexcept { return text.hash(); }
    template <std::convertible_to<std::string_view> Characters>
    std::size_t operator()(const Characters& characters) const noexcept {
        return Text::hash_of(characters);
    }
};

}  // namespace models
