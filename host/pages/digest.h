// Short digests of texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host::pages {

inline constexpr std::size_t DIGEST_SIZE = 16;

/// Returns the 64-bit XXH3 of a text as 16 hexadecimal digits.
std::string digest_of(std::string_view text);

}  // namespace host::pages
