// Messages on standard error.
#pragma once

#include <string_view>

namespace host {

/// Prints one line on standard error, after the name of the program. Control characters in the message are escaped, a
/// line feed as "\x0a". Passwords in addresses are removed.
void say(std::string_view message);

}  // namespace host
