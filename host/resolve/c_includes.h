// Which imports of C and C++ name headers.
#pragma once

#include "host/syntax/syntax.h"

#include <string_view>

namespace host::resolve {

/// Returns whether an import of a file of C or C++ is an #include, and not `using namespace`.
inline bool is_include(const syntax::Syntax& syntax, const syntax::Import& import) {
    return import.is_star && (import.is_system || syntax.name(import.module).find('.') != std::string_view::npos);
}

}  // namespace host::resolve
