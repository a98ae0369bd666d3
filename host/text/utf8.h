// Text as UTF-8, code point by code point.
#pragma once

#include <cstddef>
#include <string_view>

namespace host {

/// What a text may begin with that is no part of it.
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

/// How many bytes the code point at the beginning of `text`, which is not empty, takes; 0 when none begins there.
std::size_t code_point_bytes(std::string_view text);

/// Whether a byte is of UTF-8 and not the first of a code point.
constexpr bool continues_code_point(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Whether code points are all that `text` consists of.
bool is_utf8(std::string_view text);

/// How many code units `text`, which is UTF-8, takes as UTF-16.
std::size_t utf16_units(std::string_view text);

/// What of `text` stands at a column or behind it; columns count UTF-16 code units from 0. Empty behind the end. A byte
/// at which no code point begins counts one.
std::string_view from_column(std::string_view text, std::size_t column);

}  // namespace host
