// Numbers and texts as bytes, for files that this program writes for itself.
#pragma once

#include "host/files/content_hash.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace host::worktree {

/// Returns a hash that other bytes hardly have.
inline std::uint64_t checksum(std::string_view bytes) {
    ContentHash hash;
    hash.add(bytes);
    return std::bit_cast<std::uint64_t>(hash.value());
}

/// Returns the content of a file; "" where there is no regular file, or one that cannot be read.
inline std::string bytes_of_file(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return "";
    }
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    std::string bytes(error ? 0 : static_cast<std::size_t>(size), '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

/// Thrown for bytes that are not what was written.
struct Malformed : std::runtime_error {
    Malformed() : std::runtime_error("malformed bytes") {}
};

class ByteWriter {
  public:
    /// Appends a number, small ones in few bytes.
    void number(std::uint64_t number) {
        constexpr std::uint64_t HIGHEST_OF_SEVEN = 0x80;
        while (number >= HIGHEST_OF_SEVEN) {
            bytes_ += static_cast<char>((number & 0x7FU) | HIGHEST_OF_SEVEN);
            number >>= 7U;
        }
        bytes_ += static_cast<char>(number);
    }
    void text(std::string_view text) {
        number(text.size());
        bytes_ += text;
    }

    [[nodiscard]] const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
};

/// Reads in the order of writing. Every function throws `Malformed` where the bytes end too early.
class ByteReader {
  public:
    /// `bytes` must outlive the reader.
    explicit ByteReader(std::string_view bytes) : rest_(bytes) {}

    std::uint64_t number() {
        constexpr unsigned LAST_SHIFT = 63;
        std::uint64_t number = 0;
        for (unsigned shift = 0;; shift += 7) {
            if (rest_.empty() || shift > LAST_SHIFT) {
                throw Malformed();
            }
            const auto byte = static_cast<unsigned char>(rest_.front());
            rest_.remove_prefix(1);
            number |= (byte & std::uint64_t{0x7F}) << shift;
            if (byte < 0x80U) {
                return number;
            }
        }
    }

    /// Reads a number that is below `end`.
    template <class Number = std::uint32_t>
    Number below(std::uint64_t end) {
        const std::uint64_t number = this->number();
        if (number >= end) {
            throw Malformed();
        }
        return static_cast<Number>(number);
    }

    /// Reads how many things follow, each of at least one byte.
    std::size_t count() {
        const std::uint64_t count = number();
        if (count > rest_.size()) {
            throw Malformed();
        }
        return static_cast<std::size_t>(count);
    }

    bool flag() { return below<std::uint8_t>(2) == 1; }

    /// Valid as long as the bytes.
    std::string_view text() {
        const std::size_t size = count();
        const std::string_view text = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return text;
    }

    [[nodiscard]] bool is_at_end() const { return rest_.empty(); }
    [[nodiscard]] std::size_t rest() const { return rest_.size(); }  ///< how many bytes are left

  private:
    std::string_view rest_;
};

}  // namespace host::worktree
