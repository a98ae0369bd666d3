// Finds how patterns match nodes of a tree.
#pragma once

#include "host/sources/pattern.h"

#include <tree_sitter/api.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <span>
#include <vector>

namespace host::sources {

struct CapturedPart {
    CaptureNumber capture = 0;
    TSNode node{};
};

/// Matches patterns with the nodes of a tree, which must outlive it.
class PatternMatcher {
  public:
    /// Receives what is captured, a parent before its children, in the order of the text. Valid during the call.
    using OnMatch = std::function<void(std::span<const CapturedPart> captured)>;

    explicit PatternMatcher(TSNode root);
    ~PatternMatcher() { ts_tree_cursor_delete(&cursor_); }
    PatternMatcher(const PatternMatcher&) = delete;
    PatternMatcher& operator=(const PatternMatcher&) = delete;

    /// Calls `on_match` for each way in which the pattern matches the node, whose type is the pattern's, in the order
    /// of the children that differ. What captures nothing is found in one way: the first.
    void match(const NodePattern& pattern, TSNode node, const OnMatch& on_match);

  private:
    struct Child {
        TSNode node{};
        TSFieldId field = 0;
    };
    struct Level {
        const void* parent = nullptr;
        std::vector<Child> children;
    };
    using Next = std::function<void()>;

    // Calls `next` for each way in which the node matches, with that way's captures in `captured_`.
    void match_node(const NodePattern& pattern, TSNode node, const Next& next);
    // The same for the patterns of children.
    void match_children(std::span<const ChildPattern> patterns, std::span<const Child> children, const Next& next);
    void match_child(const ChildPattern& pattern, TSNode node, const Next& next);
    // Fills the next level unless it holds the children of the node, as the last pattern has often left it.
    const std::vector<Child>& open_level(TSNode node);

    TSTreeCursor cursor_;
    std::deque<Level> levels_;  // the children of the nodes that are being matched, and of those that were before
    std::size_t open_levels_ = 0;
    std::vector<CapturedPart> captured_;
};

}  // namespace host::sources
