// Patterns for paths (globs), as in a shell.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A pattern for paths whose segments are separated by "/":
///
///     *                      any characters of a segment, or none
///     ?                      one character
///     [a-z]  [!a-z]          one character of a set, or one that is not in the set
///     **                     as a whole segment: any number of segments, or none
///     {a,b}                  one of several alternatives, which may be patterns and may be nested
///     \*                     the character itself
///
/// A character is a code point of UTF-8; a byte that belongs to none counts as one. A bracket or brace that is not
/// closed is an ordinary character. The time of a match is at most proportional to the product of both lengths; a path
/// that does not begin and end as the pattern does costs two comparisons.
class Glob {
  public:
    static constexpr std::size_t LONGEST = 4'096;  ///< bytes of the longest pattern; no path is longer

    /// Throws `std::invalid_argument` with one line for a longer pattern, and for more than 1,000 alternatives.
    explicit Glob(std::string_view pattern);

    /// Returns whether the pattern matches the whole path.
    [[nodiscard]] bool matches(std::string_view path) const;

  private:
    // A pattern without braces that stand for alternatives.
    struct Alternative {
        std::string beginning;  // of every path that it matches
        std::string end;        // of every path that it matches
        std::vector<std::string> segments;
    };

    std::vector<Alternative> alternatives_;
};

/// Returns whether a text contains a character that is special in a pattern.
bool is_glob(std::string_view text);

/// Returns the pattern that matches this text only.
std::string escaped(std::string_view text);

}  // namespace host
