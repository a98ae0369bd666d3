// What one line of a comment at the head of a file is: prose about the file, or one of the many things that stand
// around it (a licence, a tag, a directive to a tool, a rule of dashes).
#pragma once

#include <string_view>

namespace host {

/// What a line is to the paragraph above it and to the lines below.
enum class Role {
    PROSE,         ///< goes on with the paragraph
    BREAK,         ///< ends the paragraph and says nothing itself
    INTRODUCTION,  ///< ends the paragraph and begins one with its text
    ASIDE,         ///< ends the paragraph and begins one that does not describe the file
    NOTICE,        ///< an aside that opens a licence
};

struct CommentLine {
    Role role;
    std::string_view text;  ///< what it says, a part of the line that was read; empty for a break
};

/// Reads a line that has lost its comment marks. `delimited` tells whether it stands in a delimited comment, where a
/// directive to a tool may go on for several lines.
CommentLine read_comment_line(std::string_view line, bool delimited);

/// Whether a paragraph is a part of a licence. Below a notice (`in_licence`) a hint is enough; elsewhere it takes the
/// phrases that only licences use.
bool speaks_of_licence(std::string_view paragraph, bool in_licence);

/// Whether a text is no more than the name of a file or an element: "foo.h", "src/foo", "<algorithm>".
bool is_only_a_name(std::string_view text);

/// Whether a paragraph is no more than one word, and no sentence: "TYPES", "Middleware". Languages that set no blanks
/// between words are spared.
bool is_banner(std::string_view paragraph);

}  // namespace host
