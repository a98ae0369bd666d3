// Patterns for paths, as a shell has them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A pattern for paths whose segments are separated by "/":
///
///     *  ?  [a-z]  [!a-z]    any characters of a segment, one of them, one of these, one but these
///     **                     as a whole segment: any number of segments, none too
///     {a,b}                  either; these may hold patterns and one another
///     \*                     the character itself
///
/// Characters are code points of UTF-8; a byte that is part of none counts as one. A bracket or a brace that nothing
/// closes is a character. The time that a match takes grows with the product of both lengths at most.
class Glob {
  public:
    static constexpr std::size_t LONGEST = 4'096;  ///< bytes of a pattern: no path is longer

    /// Throws `std::invalid_argument` with one line for a pattern longer than that, or with more than 1,000
    /// alternatives.
    explicit Glob(std::string_view pattern);

    /// Whether the pattern is one for the whole path.
    [[nodiscard]] bool matches(std::string_view path) const;

  private:
    using Segments = std::vector<std::string>;

    std::vector<Segments> alternatives_;
};

/// Whether a text holds what means something in a pattern, other than itself.
bool is_glob(std::string_view text);

/// The pattern for one text alone.
std::string escaped(std::string_view text);

}  // namespace host
