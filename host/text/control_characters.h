// Control characters: a terminal or a browser obeys them instead of showing them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// U+FFFD, which replaces a character that cannot be shown.
inline constexpr std::string_view REPLACEMENT_CHARACTER = "\uFFFD";

/// Returns the number of bytes of the control character at the beginning of `text`; 0 when there is none. `text` is not
/// empty. Control characters are C0, DEL and C1, the line and paragraph separators (U+2028, U+2029), and those that
/// change the direction of writing (U+202A to U+202E, U+2066 to U+2069).
std::size_t control_character_bytes(std::string_view text);

/// Returns whether `text` contains a control character.
bool has_control_character(std::string_view text);

/// Returns `text` with U+FFFD for each control character.
std::string without_control_characters(std::string_view text);

/// The same for a text of several lines: tabs and line ends stay, and "\r\n" becomes "\n".
std::string lines_without_control_characters(std::string_view text);

}  // namespace host
