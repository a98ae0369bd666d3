// The readers of all languages: each turns the tree of a text into what that states about names (syntax.h).
#pragma once

#include "host/syntax/syntax.h"

#include <tree_sitter/api.h>

#include <string_view>

namespace host::sources {

/// Each reads a tree of its grammar, damaged or not. `text` is the text of the tree.
syntax::Syntax read_c(std::string_view text, TSNode root);
syntax::Syntax read_cpp(std::string_view text, TSNode root);
syntax::Syntax read_ecmascript(std::string_view text, TSNode root, const TSLanguage* grammar);
syntax::Syntax read_go(std::string_view text, TSNode root);
syntax::Syntax read_java(std::string_view text, TSNode root);
syntax::Syntax read_python(std::string_view text, TSNode root);
syntax::Syntax read_rust(std::string_view text, TSNode root);

}  // namespace host::sources
