// Doc comments and summaries as HTML.
#pragma once

#include <string>
#include <string_view>

namespace host::html {

/// Returns prose on one line as HTML: code spans as such, everything else as text.
std::string inline_html(std::string_view prose);

/// Returns the lead of a doc comment (lead_blocks.h) as HTML: paragraphs, lists, and the code in these. Empty when there
/// is none. What the comment has of HTML is shown as text, or left out as inline_markdown.h says.
std::string lead_html(std::string_view documentation);

}  // namespace host::html
