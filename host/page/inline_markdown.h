// The inline markup of a doc comment, and it as Markdown.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A piece of prose, or the content of a code span; on one line.
struct InlinePart {
    std::string text;
    bool is_code = false;
};

/// Prose of a doc comment, on one line, without its markup: code spans, the names behind links and roles as such, tags
/// of HTML and the targets of links left out. Nothing is escaped, and character references ("&lt;") stay.
std::vector<InlinePart> inline_parts(std::string_view prose);

/// Prose of a doc comment, on one line, as Markdown without blanks around it. Code spans stay, and so do the names
/// behind links and roles ("{@link Foo}", ":class:`Foo`"), as code spans; tags of HTML and the targets of links go;
/// character references ("&lt;") stay. Whatever else Markdown would take for markup is escaped.
std::string inline_markdown(std::string_view prose);

}  // namespace host
