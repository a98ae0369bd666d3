// Macros that stand where the grammars of C and C++ know no name: `API int f();`, `int CALL f();`, `class EXPORT C {`,
// `int f ARGS((int));`, `f() ATTRIBUTE;`, `FIELDS` on a line of its own.
//
// They are told by their capitals and their place, and outside of the bodies of functions alone; but for what stands
// behind a number, `64 KB`. A label goes as well that a directive keeps from its statement.
#pragma once

#include "host/sources/c/c_scanner.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::sources {

struct LooseMacro {
    std::string_view name;
    std::uint32_t line = 1;  ///< 1-based
    bool is_called = false;
};

/// Returns the text with blanks in place of such macros; every other byte stays. Takes time in proportion to the text.
std::string without_loose_macros(std::string_view text);

/// Returns the same without what conditions split (c_splits.h).
std::string mended_c(std::string_view text);

/// Returns those macros of a text and its tokens, in the order of the text, which must outlive them.
std::vector<LooseMacro> loose_macros(std::string_view text, const CTokens& scanned);

}  // namespace host::sources
