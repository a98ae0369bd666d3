// Text of a repository made safe to stand in Markdown, and what Markdown makes of it.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace embedded {

/// The text as it is, on one line: line breaks become blanks, and what would open a code span, a link, a tag, a heading
/// or a cell of a table is escaped.
std::string plain_text(std::string_view text);

/// The text as one inline code span: line breaks become blanks, and its fence is longer than any run of backticks in
/// it.
std::string code_span(std::string_view text);

/// As `code_span`, for a cell of a table: bars are escaped.
std::string code_cell(std::string_view text);

/// The lines as a fenced block whose fence is longer than any run of backticks in them. `language` is its tag, unless
/// it holds anything but letters, digits and "+-#_.".
std::string fenced_block(std::span<const std::string> lines, std::string_view language);

/// Whether a line, without the blanks around it, is a heading: "# HashSet".
bool is_heading(std::string_view line);

}  // namespace embedded
