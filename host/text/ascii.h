// Text compared byte by byte, as what is written in ASCII can be.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace host {

/// The small letter of a capital A to Z; any other byte as it is.
constexpr char lower(char character) {
    return 'A' <= character && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// Whether the character is one of A to Z and a to z.
constexpr bool is_letter(char character) {
    return 'a' <= lower(character) && lower(character) <= 'z';
}

/// Whether the character may be one of a name in most languages: a letter, a digit, "_", or any byte beyond ASCII.
constexpr bool is_part_of_name(char character) {
    return is_letter(character) || ('0' <= character && character <= '9') || character == '_' ||
           static_cast<unsigned char>(character) >= 0x80;
}

/// `text` with its capitals A to Z made small.
inline std::string lowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), lower);
    return result;
}

/// Whether `text` begins with one of the texts in `beginnings`.
bool starts_with_any(std::string_view text, const auto& beginnings) {
    return std::ranges::any_of(beginnings, [text](std::string_view beginning) { return text.starts_with(beginning); });
}

}  // namespace host
