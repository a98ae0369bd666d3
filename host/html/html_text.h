// Text of a repository as text of HTML.
#pragma once

#include <string>
#include <string_view>

namespace host::html {

/// Returns the HTML that shows a text, between tags or in an attribute between quotes: what HTML takes for markup is
/// escaped, bytes that are not UTF-8 become U+FFFD, and control characters, those that change the direction of writing
/// too, are named: "[U+202E]". Line feeds and tabs stay.
std::string html_text(std::string_view text);

/// Returns the HTML of a path, which may wrap behind each "/".
std::string path_html(std::string_view path);

}  // namespace host::html
