// The prose of a doc comment, without comment marks.
#pragma once

#include <string>
#include <string_view>

namespace host::sources {

/// The description that successive comments hold: no comment marks, no decoration at the beginning of lines, no common
/// indent, and of block tags ("@param", "\returns") only those that describe ("@brief"). Lines stay lines, paragraphs
/// stay apart by one empty line. Empty when nothing is left.
///
///     /** Adds two numbers.           Adds two numbers.
///      *
///      * They may be negative.        They may be negative.
///      * @param a the first
///      */
std::string prose_of_comments(std::string_view comments);

/// The text of a docstring, literal prefix and quotes included, without these and without its common indent.
std::string prose_of_docstring(std::string_view literal);

/// The text without the indent that all of its lines have but those that are blank, the first line counting as one
/// that is indented by `first_indent`; without trailing blanks, and without blank lines around it. Each run of blank
/// lines becomes one.
std::string dedented(std::string_view text, std::size_t first_indent);

}  // namespace host::sources
