// The language of a source file.
#pragma once

#include <string>
#include <string_view>

namespace host::scip {

/// What a document states of its language, in lower case; empty when it states nothing. A name with a NUL in it says
/// nothing, for no query could ask for it, and neither does one that is longer than a symbol.
std::string stated_language(std::string_view stated);

/// The language of a file in lower case: what the document states, else by the path's extension; empty when neither
/// says.
std::string language_of(std::string_view stated, std::string_view path);

}  // namespace host::scip
