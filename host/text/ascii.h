// Letters of ASCII, and text that is compared byte by byte.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace host {

/// Returns the lower-case letter for A to Z, and any other byte unchanged.
constexpr char lower(char character) {
    return 'A' <= character && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// Returns whether the character is one of A to Z and a to z.
constexpr bool is_letter(char character) {
    return 'a' <= lower(character) && lower(character) <= 'z';
}

/// Returns whether most languages allow the character in a name: a letter, a digit, "_" or a byte beyond ASCII.
constexpr bool is_part_of_name(char character) {
    return is_letter(character) || ('0' <= character && character <= '9') || character == '_' ||
           static_cast<unsigned char>(character) >= 0x80;
}

/// Returns `text` with A to Z in lower case.
inline std::string lowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), lower);
    return result;
}

/// Returns whether `text` begins with one of `beginnings`.
bool starts_with_any(std::string_view text, const auto& beginnings) {
    return std::ranges::any_of(beginnings, [text](std::string_view beginning) { return text.starts_with(beginning); });
}

}  // namespace host
