// Statements that open scopes.
#include "host/sources/c/c_reader.h"

#include <array>
#include <utility>

namespace host::sources {

using syntax::Operation;
using syntax::UNKNOWN;

// Outside of a function it is the body of one whose head was not understood.
CReader::Id CReader::read_block(const Node& node) {
    const bool was_local = std::exchange(place_.is_local, true);
    out_.open_local();
    visit_children(node);
    out_.close();
    place_.is_local = was_local;
    return UNKNOWN;
}

// `for (auto& each : all)`; of a map, `auto& [key, value]`.
CReader::Id CReader::read_range_loop(const Node& node) {
    out_.open_local();
    visit(node.child(fields_.initializer));
    const Id all = visit(node.child(fields_.right));
    const Id element = all == UNKNOWN ? UNKNOWN : out_.add(Operation::ELEMENT, all);
    const Specifiers stated = specifiers(node);
    const Declarator each = declarator(node.child(fields_.declarator), stated.type);
    if (each.name.exists() && each.name.type() == "structured_binding_declarator") {
        std::uint32_t number = 0;
        for_each_child(each.name, [&](const Node& name, TSFieldId) {
            const Id of_map = number == 0 ? out_.add(Operation::KEY, all) : element;
            const Id component = out_.add(Operation::COMPONENT, element, number++);
            out_.bind(text(name), all == UNKNOWN ? UNKNOWN : out_.one_of(std::array{of_map, component}));
        });
    } else if (each.name.exists()) {
        out_.bind(text(each.name), stated.is_deduced ? element : out_.instance(each.type));
    }
    visit(node.child(fields_.body));
    out_.close();
    return UNKNOWN;
}

}  // namespace host::sources
