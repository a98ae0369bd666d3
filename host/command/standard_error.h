// What is said beside the results.
#pragma once

#include <string_view>

namespace host {

/// Says one line on standard error, behind the name of the program. The message may name things that hold control
/// characters: those are written out, a line feed as "\x0a". Passwords in addresses are left out.
void say(std::string_view message);

}  // namespace host
