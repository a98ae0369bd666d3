// Text as UTF-8, code point by code point.
#pragma once

#include <cstddef>
#include <string_view>

namespace embedded {

/// How many bytes the code point at the beginning of `text`, which is not empty, takes; 0 when none begins there.
std::size_t code_point_bytes(std::string_view text);

/// Whether code points are all that `text` consists of.
bool is_utf8(std::string_view text);

/// How many code units `text`, which is UTF-8, takes as UTF-16.
std::size_t utf16_units(std::string_view text);

}  // namespace embedded
