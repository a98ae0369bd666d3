// Doc comments and summaries as HTML.
#pragma once

#include <string>
#include <string_view>

namespace host::html {

/// Returns Markdown of one line, as inline_markdown.h prints it, as HTML: its code spans as such, everything else as
/// text.
std::string html_of_markdown(std::string_view line);

/// Returns the lead of a doc comment (lead_blocks.h) as HTML: paragraphs, lists, and the code in these. Empty when
/// there is none. What the comment has of HTML is shown as text, or left out as inline_markdown.h says.
std::string lead_html(std::string_view documentation);

}  // namespace host::html
