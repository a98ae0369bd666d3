// Characters that whoever prints a text obeys instead of showing them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// What stands where a character cannot be shown: U+FFFD.
inline constexpr std::string_view REPLACEMENT_CHARACTER = "\uFFFD";

/// How many bytes the control character at the beginning of `text`, which is not empty, takes; 0 when none stands there.
/// These are C0, DEL and C1, the separators of lines and paragraphs (U+2028, U+2029), and what turns the direction of
/// writing (U+202A to U+202E, U+2066 to U+2069).
std::size_t control_character_bytes(std::string_view text);

bool has_control_character(std::string_view text);

/// The text with U+FFFD in the place of each control character.
std::string without_control_characters(std::string_view text);

/// The same of a text of several lines: tabs and the ends of lines stay, "\r\n" as "\n".
std::string lines_without_control_characters(std::string_view text);

}  // namespace host
