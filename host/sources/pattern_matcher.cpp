#include "host/sources/pattern_matcher.h"

#include <algorithm>

namespace host::sources {

namespace {

constexpr TSSymbol ERROR_SYMBOL = 0xFFFF;

bool has_type_of(const NodePattern& pattern, TSNode node) {
    return pattern.symbol == NodePattern::ANY_NAMED ? ts_node_is_named(node) && ts_node_symbol(node) != ERROR_SYMBOL
                                                    : ts_node_symbol(node) == pattern.symbol;
}

bool lacks(std::span<const TSFieldId> fields, TSNode node) {
    return std::ranges::all_of(
        fields, [&](TSFieldId field) { return ts_node_is_null(ts_node_child_by_field_id(node, field)); });
}

}  // namespace

PatternMatcher::PatternMatcher(TSNode root) : cursor_(ts_tree_cursor_new(root)) {}

void PatternMatcher::match(const NodePattern& pattern, TSNode node, const OnMatch& on_match) {
    const auto report = [&] { on_match(captured_); };
    match_node(pattern, node, std::cref(report));
}

void PatternMatcher::match_node(const NodePattern& pattern, TSNode node, const Next& next) {
    if (!lacks(pattern.absent, node)) {
        return;
    }
    const std::size_t captured = captured_.size();
    for (const CaptureNumber capture : pattern.captures) {
        captured_.push_back({capture, node});
    }
    if (pattern.children.empty()) {
        next();
    } else {
        match_children(pattern.children, open_level(node), next);
        --open_levels_;
    }
    captured_.resize(captured);
}

void PatternMatcher::match_children(std::span<const ChildPattern> patterns, std::span<const Child> children,
                                    const Next& next) {
    if (patterns.empty()) {
        next();
        return;
    }
    const ChildPattern& pattern = patterns.front();
    for (; !children.empty(); children = children.subspan(1)) {
        const Child& child = children.front();
        bool is_found = false;
        const auto rest = [&] { match_children(patterns.subspan(1), children.subspan(1), next); };
        const auto find = [&] { is_found = true; };
        if (pattern.field == 0 || pattern.field == child.field) {
            match_child(pattern, child.node, pattern.has_captures ? Next(std::cref(rest)) : Next(std::ref(find)));
        }
        if (is_found) {
            rest();
            return;
        }
        if (pattern.is_next && ts_node_is_named(child.node)) {
            return;
        }
    }
}

void PatternMatcher::match_child(const ChildPattern& pattern, TSNode node, const Next& next) {
    for (const NodePattern& alternative : pattern.alternatives) {
        if (has_type_of(alternative, node)) {
            match_node(alternative, node, next);
        }
    }
}

const std::vector<PatternMatcher::Child>& PatternMatcher::open_level(TSNode node) {
    if (open_levels_ == levels_.size()) {
        levels_.emplace_back();
    }
    Level& level = levels_[open_levels_++];
    if (level.parent != node.id) {
        level.parent = node.id;
        level.children.clear();
        ts_tree_cursor_reset(&cursor_, node);
        for (bool is_there = ts_tree_cursor_goto_first_child(&cursor_); is_there;
             is_there = ts_tree_cursor_goto_next_sibling(&cursor_)) {
            level.children.push_back(
                {ts_tree_cursor_current_node(&cursor_), ts_tree_cursor_current_field_id(&cursor_)});
        }
    }
    return level.children;
}

}  // namespace host::sources
