// The colors of code: which part of a text is what.
#pragma once

#include "host/sources/language.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace host::html {

/// What a byte of code is part of. PLAIN has no color of its own.
enum class CodeClass : std::uint8_t { PLAIN, KEYWORD, STRING, NUMBER, COMMENT, FUNCTION, TYPE };

/// What each byte of a text is part of, as the grammar's own query for highlighting says of its tree. All are plain
/// when the text does not parse within the limits of syntax_tree.h.
std::vector<CodeClass> code_classes(std::string_view text, const sources::Language& language);

}  // namespace host::html
