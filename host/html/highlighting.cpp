#include "host/html/highlighting.h"

#include "host/html/highlight_query.h"
#include "host/sources/syntax_tree.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <span>
#include <tuple>

namespace host::html {

namespace {

// A node that a pattern colors.
struct ColoredNode {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::uint32_t pattern = 0;
    CodeClass color = CodeClass::PLAIN;
};

std::vector<ColoredNode> colored_nodes(std::string_view text, TSNode root, const HighlightQuery& query) {
    constexpr std::uint32_t MOST_MATCHES_AT_ONCE = 10'000;
    const std::unique_ptr<TSQueryCursor, void (*)(TSQueryCursor*)> cursor(ts_query_cursor_new(),
                                                                          ts_query_cursor_delete);
    ts_query_cursor_set_match_limit(cursor.get(), MOST_MATCHES_AT_ONCE);
    ts_query_cursor_exec(cursor.get(), query.handle(), root);
    std::vector<ColoredNode> nodes;
    TSQueryMatch match;
    while (ts_query_cursor_next_match(cursor.get(), &match)) {
        if (!query.holds(match, text)) {
            continue;
        }
        for (const TSQueryCapture& capture : std::span(match.captures, match.capture_count)) {
            if (const std::optional<CodeClass> color = query.class_of(capture.index)) {
                nodes.push_back({.begin = ts_node_start_byte(capture.node),
                                 .end = ts_node_end_byte(capture.node),
                                 .pattern = match.pattern_index,
                                 .color = *color});
            }
        }
    }
    // What lies in another one is colored after it; so is what a later pattern says of the same.
    std::ranges::sort(nodes, {}, [](const ColoredNode& node) {
        return std::tuple(node.begin, -std::int64_t{node.end}, node.pattern);
    });
    return nodes;
}

}  // namespace

std::vector<CodeClass> code_classes(std::string_view text, const sources::Language& language) {
    std::vector<CodeClass> classes(text.size(), CodeClass::PLAIN);
    const HighlightQuery* const query = highlight_query_of(language);
    const std::atomic<bool> is_cancelled = false;
    const sources::ParserMemory memory;  // begins behind the query, which lives on
    const std::optional<sources::SyntaxTree> tree =
        query == nullptr ? std::nullopt : sources::parsed(text, language, is_cancelled, memory);
    if (!tree) {
        return classes;
    }
    for (const ColoredNode& node : colored_nodes(text, tree->root(), *query)) {
        std::fill(classes.begin() + node.begin, classes.begin() + node.end, node.color);
    }
    return classes;
}

}  // namespace host::html
