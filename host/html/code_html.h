// Code as HTML.
#pragma once

#include <string>
#include <string_view>

namespace host::html {

/// Returns code of a file as HTML, colored by classes of its style sheet as far as the language is understood.
/// `language` is the file's as an index has it, and may be empty. Of a long code no color is worth the time that it
/// takes.
std::string code_html(std::string_view code, std::string_view language, std::string_view path);

}  // namespace host::html
