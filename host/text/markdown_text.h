// Writes text of a repository safely into Markdown, and recognizes Markdown in it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace host {

/// Returns whether Markdown treats the character at `place` of a line as markup: it opens or closes emphasis, or opens
/// a code span, a link, a tag, an escape, a character reference or, at the beginning, a block. "_" inside a word is
/// not.
bool is_markup(std::string_view line, std::size_t place);

/// Returns the text on one line, shown literally: line breaks become blanks, and markup is escaped.
std::string plain_text(std::string_view text);

/// Returns the `plain_text` for a cell of a table: bars are escaped, too.
std::string plain_cell(std::string_view text);

/// Returns the Markdown for a cell of a table: line breaks become blanks, and bars are escaped.
std::string markdown_cell(std::string_view markdown);

/// Returns the text as one inline code span: line breaks become blanks, and the fence is longer than any run of
/// backticks in the text.
std::string code_span(std::string_view text);

/// Returns the `code_span` for a cell of a table: bars are escaped, too.
std::string code_cell(std::string_view text);

/// Returns the lines as a fenced block whose fence is longer than any run of backticks in them. `language` becomes its
/// tag if it consists of letters, digits and "+-#_.". Control characters other than tabs become U+FFFD.
std::string fenced_block(std::span<const std::string> lines, std::string_view language);

/// Returns the fence that opens or closes a code block at the beginning of a line: three or more "`" or "~". Empty for
/// any other line.
std::string_view fence_of(std::string_view line);

/// Returns whether a line, without blanks at its ends, is a heading: "# HashSet".
bool is_heading(std::string_view line);

}  // namespace host
