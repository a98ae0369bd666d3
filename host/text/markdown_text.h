// Text of a repository made safe to stand in Markdown, and what Markdown makes of it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace host {

/// Whether Markdown would take the character at `place` of a line for markup: what opens or closes emphasis, or opens a
/// code span, a link, a tag, an escape, a character reference or, at the beginning, a block. "_" inside of a word does not.
bool is_markup(std::string_view line, std::size_t place);

/// The text as it is, on one line: line breaks become blanks, and markup is escaped.
std::string plain_text(std::string_view text);

/// As `plain_text`, for a cell of a table: bars are escaped.
std::string plain_cell(std::string_view text);

/// Markdown for a cell of a table: line breaks become blanks, and bars are escaped.
std::string markdown_cell(std::string_view markdown);

/// The text as one inline code span: line breaks become blanks, and its fence is longer than any run of backticks in
/// it.
std::string code_span(std::string_view text);

/// As `code_span`, for a cell of a table: bars are escaped.
std::string code_cell(std::string_view text);

/// The lines as a fenced block whose fence is longer than any run of backticks in them. `language` is its tag, unless
/// it holds anything but letters, digits and "+-#_.". Control characters other than tabs become U+FFFD.
std::string fenced_block(std::span<const std::string> lines, std::string_view language);

/// What opens or closes a block of code on a line without blanks before it, "```" or more of these or of "~"; empty for any
/// other line.
std::string_view fence_of(std::string_view line);

/// Whether a line, without the blanks around it, is a heading: "# HashSet".
bool is_heading(std::string_view line);

}  // namespace host
