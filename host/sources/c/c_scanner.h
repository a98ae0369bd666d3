// Splits a text of C or C++ as its preprocessor does: into tokens and directives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace host::sources {

/// A word or a mark. A literal is one mark.
struct CToken {
    std::size_t begin = 0;  ///< in bytes
    std::size_t end = 0;
    std::uint32_t line = 1;  ///< 1-based
    bool is_word = false;
    bool is_first = false;  ///< on its line
};

/// A line that begins with "#", and those that a backslash joins to it.
struct CDirective {
    std::size_t begin = 0;  ///< of the "#", in bytes
    std::size_t end = 0;    ///< of the text, before the line end
    std::uint32_t line = 1;
    std::uint32_t last_line = 1;
    std::size_t tokens_before = 0;  ///< how many tokens of the text stand above it
};

struct CTokens {
    std::vector<CToken> tokens;  ///< without comments and directives
    std::vector<CDirective> directives;
};

/// Splits a text, in time in proportion to it.
CTokens scan_c(std::string_view text);

constexpr bool is_c_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

constexpr bool is_c_digit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool is_of_c_name(char c) {
    return is_c_letter(c) || is_c_digit(c);
}

/// Returns whether a word is a keyword of the expressions and statements of C.
bool is_c_keyword(std::string_view word);

}  // namespace host::sources
