// Where the bodies of functions stand, by their brackets alone: for texts of which a tree knows only parts.
#pragma once

#include "host/sources/c/c_scanner.h"
#include "host/sources/c/c_splits.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace host::sources {

/// What stands between the braces of a function.
struct CBody {
    std::size_t begin = 0;  ///< behind the first brace, in bytes
    std::size_t end = 0;    ///< of the last one, or of the text where that is missing
};

/// Returns the bodies of a text and its tokens that stand in no other, in the order of the text; initializers may be
/// among them. `splits` are not looked at. Where directives keep a bracket from its counterpart, a body may be too long.
std::vector<CBody> bodies_of_functions(std::string_view text, const CTokens& scanned, std::span<const CSplit> splits);

}  // namespace host::sources
