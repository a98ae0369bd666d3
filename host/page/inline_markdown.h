// The inline markup of a doc comment as Markdown.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// Prose of a doc comment, on one line, as Markdown without blanks around it. Code spans stay, and so do the names
/// behind links and roles ("{@link Foo}", ":class:`Foo`"), as code spans; tags of HTML and the targets of links go;
/// character references ("&lt;") stay. Whatever else Markdown would take for markup is escaped.
std::string inline_markdown(std::string_view prose);

}  // namespace host
