// Text that a terminal shows as it is.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// The text with its control characters (control_characters.h) written out byte by byte, a line feed as "\x0a".
std::string printable(std::string_view text);

}  // namespace host
