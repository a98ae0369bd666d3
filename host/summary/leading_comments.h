// The comments at the head of a source file, and nothing behind them.
//
// The language is not known: a line is judged by how it begins. The head of a file consists of comments, blank lines
// and formalities (a shebang, an include guard, `"use strict"`, a package clause); it ends where any other code
// begins. A docstring is a comment like any other.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace host {

/// How a language writes one kind of comment.
struct CommentStyle {
    std::string_view open;
    std::string_view close;       ///< empty when a comment ends with its line
    std::string_view decoration;  ///< characters that may follow `open` or begin an inner line
};

/// Walks the comment blocks at the head of a file. A block is one delimited comment, or the successive lines that
/// begin with one mark. Reads no further than it is asked to, and of an endless line only the beginning.
///
///     LeadingComments comments(lines);
///     while (comments.next_block()) {
///         while (const auto line = comments.next_line()) { use(*line); }
///     }
class LeadingComments {
  public:
    /// `lines` (without their ends) must outlive this object and all that it returns.
    explicit LeadingComments(std::span<const std::string> lines);

    /// Goes to the next block; false when there is none. The block before must have been read to its end.
    bool next_block();

    /// The next line of the block, without marks and surrounding blanks; none at the end of the block.
    std::optional<std::string_view> next_line();

    /// Whether the current block is one delimited comment.
    [[nodiscard]] bool delimited() const { return delimited_; }

  private:
    /// False, and nothing left to read, behind the last line.
    bool go_to_next_line();
    /// Makes `style` that of the block, none to end it, and passes its opening mark.
    void open(const CommentStyle* style);

    std::span<const std::string> below_;   // the lines below the current one
    std::string_view rest_;                // what is unread of the current line, without surrounding blanks
    const CommentStyle* style_ = nullptr;  // the block's; null when it is read to its end
    bool delimited_ = false;
};

}  // namespace host
