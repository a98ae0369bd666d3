// Classifies a line of the comment at the head of a file: prose about the file, or something else (a licence, a tag, a
// directive to a tool, a rule of dashes).
#pragma once

#include <string_view>

namespace host {

/// The role of a line for the paragraph above it and for the lines below.
enum class Role {
    PROSE,         ///< continues the paragraph
    BREAK,         ///< ends the paragraph and has no text
    INTRODUCTION,  ///< ends the paragraph and begins one that describes the file
    ASIDE,         ///< ends the paragraph and begins one that does not describe the file
    NOTICE,        ///< an aside that begins a licence
};

struct CommentLine {
    Role role;
    std::string_view text;  ///< the text of the line, a part of it; empty for a break
};

/// Classifies a line without its comment marks. `delimited` says whether it is part of a delimited comment, where a
/// directive to a tool may take several lines.
CommentLine read_comment_line(std::string_view line, bool delimited);

/// Returns whether a paragraph is part of a licence. Below a notice (`in_licence`) a hint is enough; elsewhere the
/// paragraph must contain a phrase that only licences use.
bool speaks_of_licence(std::string_view paragraph, bool in_licence);

/// Returns whether a text is only the name of a file or an element: "foo.h", "src/foo", "<algorithm>".
bool is_only_a_name(std::string_view text);

/// Returns whether a paragraph is a single word and not a sentence: "TYPES", "Middleware". Never true of text beyond
/// ASCII, because some languages have no blanks between words.
bool is_banner(std::string_view paragraph);

}  // namespace host
