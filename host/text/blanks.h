// Blanks: the characters that separate words in source text.
#pragma once

#include <algorithm>
#include <string_view>

namespace host {

inline constexpr std::string_view BLANKS = " \t\r\n\v\f";

/// Returns `text` without the blanks at its end.
constexpr std::string_view trimmed_end(std::string_view text) {
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

/// Returns `text` without the blanks at its ends.
constexpr std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return trimmed_end(text);
}

}  // namespace host
