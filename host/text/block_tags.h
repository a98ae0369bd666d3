// The block tags of doc comments, of all languages: "@brief Adds.", "\param x the first".
#pragma once

#include <string_view>

namespace host {

/// Whether the text of a tag, named in small or capital letters, describes the declaration that the comment documents:
/// that of "@brief" does, that of "@param" does not.
bool describes_declaration(std::string_view tag);

/// Whether it says what the file is for in which the comment stands.
bool describes_file(std::string_view tag);

}  // namespace host
