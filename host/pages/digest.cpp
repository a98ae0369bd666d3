#include "host/pages/digest.h"

#include "host/files/content_hash.h"

#include <cstdint>

namespace host::pages {

std::string digest_of(std::string_view text) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    constexpr unsigned BITS_OF_A_DIGIT = 4;
    ContentHash hash;
    hash.add(text);
    auto rest = static_cast<std::uint64_t>(hash.value());
    std::string digits(DIGEST_SIZE, '0');
    for (std::size_t at = DIGEST_SIZE; at > 0; --at) {
        digits[at - 1] = DIGITS[rest & 0xFU];
        rest >>= BITS_OF_A_DIGIT;
    }
    return digits;
}

}  // namespace host::pages
