// The syntax tree of a text, parsed within limits of time and memory.
#pragma once

#include "host/sources/language.h"
#include "host/sources/parser_memory.h"

#include <tree_sitter/api.h>

#include <atomic>
#include <cstddef>
#include <optional>
#include <string_view>

namespace host::sources {

/// Ends with the memory that it was parsed in.
class SyntaxTree {
  public:
    explicit SyntaxTree(const TSTree* tree) : tree_(tree) {}

    [[nodiscard]] TSNode root() const;

    /// How many bytes of the text do not parse; what is missing counts as one.
    [[nodiscard]] std::size_t damage() const;

  private:
    const TSTree* tree_;
};

/// Parses the text. None when `is_cancelled`, which is read all the while, becomes true, and when parsing takes seconds
/// or hundreds of megabytes, or gives a tree that no source has: sources take a fraction. The tree does not refer to
/// the text, but to where its parts are. It lies in `memory`, that of this thread.
std::optional<SyntaxTree> parsed(std::string_view text, const Language& language, const std::atomic<bool>& is_cancelled,
                                 const ParserMemory& memory);

}  // namespace host::sources
