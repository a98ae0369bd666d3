// Signatures, however they are laid out.
#pragma once

#include <string>
#include <string_view>

namespace host::changes {

/// Returns the signature without the blanks that no two words need, and without commas before brackets.
std::string compact(std::string_view signature);

/// Returns whether two signatures differ at most in blanks, line ends and a comma behind the last of several things:
/// "f(a, b)" and "f(\n  a,\n  b,\n)".
bool is_same_signature(std::string_view one, std::string_view other);

/// Returns the signature on one line.
std::string on_one_line(std::string_view signature);

}  // namespace host::changes
