// Conditions that split what is one to the grammars of C and C++: a head, a statement, a list in brackets.
//
//     #ifdef A
//         if (a) {
//     #else
//         if (b) {
//     #endif
//
// A tree is made of one branch of each, without its directives, and without an `extern "C" {` that only C++ has.
#pragma once

#include "host/sources/c/c_scanner.h"
#include "host/syntax/syntax_builder.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace host::sources {

/// A part of a text that its tree is made without.
struct CSplit {
    std::size_t begin = 0;  ///< of a directive; in bytes
    std::size_t end = 0;
};

/// Returns the parts to leave out, in the order of the text: directives, and the branches between them. The regions say
/// what of the text is compiled.
std::vector<CSplit> split_parts(std::string_view text, const CTokens& scanned, std::span<const syntax::Region> regions);

}  // namespace host::sources
