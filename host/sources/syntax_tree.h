// The syntax tree of a text, parsed within limits of time and memory.
#pragma once

#include "host/sources/language.h"

#include <tree_sitter/api.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace host::sources {

class SyntaxTree {
  public:
    struct Deleter {
        void operator()(TSTree* tree) const { ts_tree_delete(tree); }
    };
    using Handle = std::unique_ptr<TSTree, Deleter>;

    explicit SyntaxTree(Handle tree) : tree_(std::move(tree)) {}

    [[nodiscard]] TSNode root() const;

    /// How many bytes of the text do not parse; what is missing counts as one.
    [[nodiscard]] std::size_t damage() const;

  private:
    Handle tree_;
};

/// Parses the text. None when `is_cancelled`, which is read all the while, becomes true, and when parsing takes seconds
/// or hundreds of megabytes, or gives a tree that no source has: sources take a fraction. The tree does not refer to
/// the text, but to where its parts are.
std::optional<SyntaxTree> parsed(std::string_view text, const Language& language,
                                 const std::atomic<bool>& is_cancelled);

}  // namespace host::sources
