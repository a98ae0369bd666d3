#include "host/text/percent_encoding.h"

#include "host/text/ascii.h"

#include <charconv>
#include <system_error>

namespace host {

namespace {

// The byte that two hexadecimal digits write.
std::optional<char> byte_of(std::string_view digits) {
    constexpr int HEXADECIMAL = 16;
    unsigned char byte = 0;
    const char* const end = digits.data() + digits.size();
    const auto [read_to, error] = std::from_chars(digits.data(), end, byte, HEXADECIMAL);
    const bool is_byte = digits.size() == 2 && error == std::errc() && read_to == end;
    return is_byte ? std::optional(static_cast<char>(byte)) : std::nullopt;
}

}  // namespace

std::optional<std::string> percent_decoded(std::string_view text) {
    std::string decoded;
    while (!text.empty()) {
        const bool is_encoded = text.front() == '%';
        const std::optional<char> byte = is_encoded ? byte_of(text.substr(1, 2)) : std::optional(text.front());
        if (!byte) {
            return std::nullopt;
        }
        decoded += *byte;
        text.remove_prefix(is_encoded ? 3 : 1);
    }
    return decoded;
}

std::string percent_encoded(std::string_view text) {
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    constexpr std::string_view UNRESERVED = "-._~/0123456789";
    std::string encoded;
    for (const char character : text) {
        if (is_letter(character) || UNRESERVED.find(character) != std::string_view::npos) {
            encoded += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            encoded.append(1, '%').append(1, DIGITS[byte >> 4U]).append(1, DIGITS[byte & 0xFU]);
        }
    }
    return encoded;
}

}  // namespace host
