#include "host/sources/surroundings.h"

#include <algorithm>
#include <cstddef>
#include <tuple>
#include <vector>

namespace host::sources {

namespace {

struct IdentifiedNode {
    NodeId id;
    const CapturedNode* captured;
    std::vector<std::size_t> wrappers = {};  // of a declaration: their places, from the inside out
    std::size_t held = 0;                    // of a wrapper: how many declarations stand directly in it
};

// Declarations and wrappers in the order of the text, an outer one before what it holds.
std::vector<IdentifiedNode> in_order(const std::unordered_map<NodeId, CapturedNode>& nodes) {
    std::vector<IdentifiedNode> order;
    for (const auto& [id, node] : nodes) {
        if (node.is_declaration || node.is_wrapper) {
            order.push_back({id, &node});
        }
    }
    std::ranges::sort(order, {}, [](const IdentifiedNode& node) {
        const CapturedNode& captured = *node.captured;
        return std::tuple(captured.bytes.begin, -std::int64_t{captured.bytes.end}, !captured.is_wrapper);
    });
    return order;
}

}  // namespace

std::unordered_map<NodeId, Surroundings> surroundings_of(const std::unordered_map<NodeId, CapturedNode>& nodes) {
    std::unordered_map<NodeId, Surroundings> surroundings;
    std::vector<IdentifiedNode> order = in_order(nodes);
    std::vector<std::size_t> around;  // the places of the nodes that hold the current one, from the outside in
    for (std::size_t place = 0; place < order.size(); ++place) {
        const CapturedNode& node = *order[place].captured;
        while (!around.empty() && order[around.back()].captured->bytes.end <= node.bytes.begin) {
            around.pop_back();
        }
        if (node.is_declaration) {
            Surroundings& found = surroundings[order[place].id];
            found.is_exported = node.is_exported;
            auto outer = around.rbegin();
            for (; outer != around.rend() && !order[*outer].captured->is_declaration; ++outer) {
                order[place].wrappers.push_back(*outer);
                ++order[*outer].held;
                found.is_exported = found.is_exported || order[*outer].captured->is_exported;
            }
            found.is_outermost = outer == around.rend();
            const auto scope = std::find_if(outer, around.rend(),
                                            [&](std::size_t each) { return order[each].captured->is_namespace; });
            found.enclosing = scope == around.rend() ? nullptr : order[*scope].id;
        }
        around.push_back(place);
    }
    for (const IdentifiedNode& node : order) {
        if (node.captured->is_declaration) {
            Bytes& whole = surroundings[node.id].whole;
            whole = node.captured->bytes;
            for (const std::size_t wrapper : node.wrappers) {
                whole = order[wrapper].held == 1 ? order[wrapper].captured->bytes : whole;
            }
        }
    }
    return surroundings;
}

}  // namespace host::sources
