// The language of a source file.
#pragma once

#include <string>
#include <string_view>

namespace embedded::scip {

/// The language of a file in lower case: what the document states, else by the path's extension; empty when neither
/// says. A name with a NUL in it says nothing: no query could ask for it.
std::string language_of(std::string_view stated, std::string_view path);

}  // namespace embedded::scip
