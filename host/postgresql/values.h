// Values as they go to the server and come from it, in its binary format: integers with the highest byte first.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host::postgresql {

/// Appends an integer of as many bytes as its type has.
template <class Integer>
void append_integer(std::string& bytes, Integer integer) {
    for (std::size_t shift = 8 * sizeof(Integer); shift > 0; shift -= 8) {
        bytes += static_cast<char>(static_cast<std::uint64_t>(integer) >> (shift - 8));
    }
}

/// The integer that these bytes, 1 to 8, are.
inline std::int64_t integer_of(std::string_view bytes) {
    std::uint64_t integer = !bytes.empty() && static_cast<signed char>(bytes.front()) < 0 ? ~std::uint64_t{0} : 0;
    for (const char byte : bytes) {
        integer = (integer << 8U) | static_cast<unsigned char>(byte);
    }
    return static_cast<std::int64_t>(integer);
}

/// The parameters of a statement, $1 and on. Texts of an index are bytes to the server, which knows no texts that are
/// not in its encoding or hold a NUL.
class Parameters {
  public:
    Parameters& integer(std::int64_t integer);
    Parameters& integers(std::span<const std::int64_t> integers);
    Parameters& bytes(std::string_view bytes);
    Parameters& bytes_list(std::span<const std::string_view> list);
    /// A text in UTF-8, without a NUL.
    Parameters& text(std::string_view text);

    struct Value {
        unsigned int type = 0;  ///< the server's number of it
        std::string bytes;
    };
    [[nodiscard]] const std::vector<Value>& values() const { return values_; }

  private:
    std::vector<Value> values_;
};

}  // namespace host::postgresql
