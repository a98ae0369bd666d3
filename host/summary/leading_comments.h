// Reads the comments at the head of a source file.
//
// The language is unknown: a line is classified by its beginning. The head of a file consists of comments, blank lines
// and formalities (a shebang, an include guard, `"use strict"`, a package clause). It ends where other code begins. A
// docstring is a comment, too.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

namespace host {

/// The syntax of one kind of comment.
struct CommentStyle {
    std::string_view open;
    std::string_view close;       ///< empty for a comment that ends with its line
    std::string_view decoration;  ///< characters to skip behind `open` and at the beginning of inner lines
};

/// Iterates over the comment blocks at the head of a file. A block is one delimited comment, or successive lines with
/// the same comment mark. Reads lines on demand, and only the beginning of a very long line.
///
///     LeadingComments comments(next_line_of_file);
///     while (comments.next_block()) {
///         while (const auto line = comments.next_line()) { use(*line); }
///     }
class LeadingComments {
  public:
    /// Returns the next line of the file, without its end; none behind the last one.
    using NextLine = std::function<std::optional<std::string_view>()>;

    /// The lines must outlive this object and all views that it returns.
    explicit LeadingComments(NextLine next_line_of_file);

    /// Moves to the next block. Returns false when there is none. The block before must have been read to its end.
    bool next_block();

    /// Returns the next line of the block, without comment marks and surrounding blanks; none at the end of the block.
    std::optional<std::string_view> next_line();

    /// Returns whether the current block is one delimited comment.
    [[nodiscard]] bool delimited() const { return delimited_; }

  private:
    /// Returns false behind the last line, and leaves nothing to read.
    bool go_to_next_line();
    /// Sets the style of the block and skips its opening mark; null ends the block.
    void open(const CommentStyle* style);

    NextLine next_line_of_file_;
    std::string_view rest_;                // the unread part of the current line, without surrounding blanks
    const CommentStyle* style_ = nullptr;  // of the block; null when it is read to its end
    bool delimited_ = false;
};

}  // namespace host
