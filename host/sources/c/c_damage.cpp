// What is left of functions that do not parse: statements that the tree has beside declarations. What they declare is a
// local of the function.
#include "host/sources/c/c_reader.h"

#include <utility>

namespace host::sources {

using syntax::UNKNOWN;

// Of nodes that declarations stand in. What begins in a loose body and ends behind it is not of that.
CReader::Id CReader::read_level(const Node& node) {
    const bool was_in_loose_body = std::exchange(is_in_loose_body_, false);
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field != fields_.name) {
            read_at_level(child);
        }
    });
    if (is_in_loose_body_) {
        close_body();
    }
    is_in_loose_body_ = was_in_loose_body;
    return UNKNOWN;
}

void CReader::read_at_level(const Node& node) {
    // A function at the beginning of a line stands in no other: the bracket that ends that is missing.
    const bool ends_body = node.type() == "function_definition" && ts_node_start_point(node.raw()).column == 0;
    const auto is_over = [&](const CBody& body) {
        return body.end <= node.begin() || (ends_body && body.begin <= node.begin());
    };
    while (!bodies_.empty() && is_over(bodies_.front())) {
        if (is_in_loose_body_) {
            close_body();
        }
        bodies_ = bodies_.subspan(1);
    }
    if (!place_.is_local && !bodies_.empty() && bodies_.front().begin <= node.begin()) {
        is_in_loose_body_ = true;
        place_.is_local = true;
        out_.open_local();
    }
    if (node.type() == "ERROR") {
        for_each_child(node, [&](const Node& child, TSFieldId) { read_at_level(child); });
    } else {
        visit(node);
    }
}

void CReader::close_body() {
    is_in_loose_body_ = false;
    place_.is_local = false;
    out_.close();
    local_tags_.clear();
}

}  // namespace host::sources
