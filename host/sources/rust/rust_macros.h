// The macros of Rust's library whose arguments are expressions.
#pragma once

#include <string>
#include <string_view>

namespace host::sources {

/// Returns the text with calls of these macros written as calls of functions, and `vec![]` as an array: the grammar
/// leaves the arguments of a macro as tokens. Every name stays in its place.
std::string with_macros_as_calls(std::string_view text);

}  // namespace host::sources
