// Text that is safe to print on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// Returns the text with its control characters (control_characters.h) escaped byte by byte: a line feed as "\x0a".
std::string printable(std::string_view text);

}  // namespace host
