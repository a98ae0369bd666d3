// Composite literals of Go: `T{a: 1}`, `[]T{{a: 1}}`, `map[K]V{k: {a: 1}}`.
#include "host/sources/go/go_reader.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Operation;
using syntax::Role;

namespace {

Node inside(const Node& element) {
    Node inner;
    for_each_child(element, [&](const Node& child, TSFieldId) { inner = child; });
    return inner;
}

}  // namespace

ExpressionId GoReader::read_composite_literal(const Node& node) {
    const Node type = node.child(fields().type);
    const ExpressionId value = out_.instance(visit(type));
    read_elements(node.child(fields().body), type, value);
    return value;
}

// Reads the elements of `value`. `type` is its type as it stands in the text; none where that leaves it out.
void GoReader::read_elements(const Node& body, const Node& type, ExpressionId value) {
    const bool is_map = type.exists() && type.type() == "map_type";
    const Node of_elements = type.exists() ? type.child(is_map ? fields().value : fields().element) : Node();
    const ExpressionId element = out_.add(Operation::ELEMENT, value);
    for_each_child(body, [&](const Node& child, TSFieldId) {
        if (child.type() != "keyed_element") {
            read_element(child, of_elements, element);
            return;
        }
        const Node key = child.child(fields().key);
        const Node inner = inside(key);
        const bool is_field = !of_elements.exists() && inner.exists() && inner.type() == "identifier";
        if (is_field) {
            out_.use_member(value, token(inner, Role::KEY));
        } else {
            read_element(key, is_map ? type.child(fields().key) : Node(), out_.add(Operation::KEY, value));
        }
        read_element(child.child(fields().value), of_elements, element);
    });
}

// An element that is a literal may leave out its type, and the `&` of a pointer.
void GoReader::read_element(const Node& node, const Node& type, ExpressionId value) {
    const Node inner = inside(node);
    if (inner.exists() && inner.type() == "literal_value") {
        const bool is_pointer = type.exists() && type.type() == "pointer_type";
        read_elements(inner, is_pointer ? inside(type) : type, value);
    } else {
        visit(inner);
    }
}

}  // namespace host::sources
