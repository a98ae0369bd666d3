// What of a text of C or C++ this system compiles (c_known_macros.h says which), by the `#if` that stand around it.
//
// A condition is followed as far as it is certain: by macros that the compiler defines or only others do, and by what
// the file has defined above, up to its next `#include`. Every other macro may be defined outside, so that a condition
// which asks for it may hold or not. A guard against a second inclusion is no condition.
#pragma once

#include "host/sources/c/c_scanner.h"
#include "host/syntax/syntax_builder.h"

#include <string_view>
#include <vector>

namespace host::sources {

/// Returns where the text begins to be compiled always, maybe or never, in its order; empty where all of it always is.
std::vector<syntax::Region> compiled_regions(std::string_view text, const CTokens& scanned);

}  // namespace host::sources
