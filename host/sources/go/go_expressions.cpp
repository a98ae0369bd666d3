// Expressions of Go, but for composite literals.
#include "host/sources/go/go_reader.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Operation;
using syntax::Role;
using syntax::Space;

ExpressionId GoReader::read_literal(const Node& /*node*/) {
    return out_.add(Operation::FOREIGN);
}

// What stands alone in a node is what that is.
ExpressionId GoReader::read_inner(const Node& node) {
    ExpressionId value = syntax::UNKNOWN;
    std::size_t count = 0;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!ts_node_is_extra(child.raw())) {
            value = visit(child);
            ++count;
        }
    });
    return count == 1 ? value : syntax::UNKNOWN;
}

ExpressionId GoReader::read_name(const Node& node) {
    return text(node) == BLANK ? syntax::UNKNOWN : out_.use(token(node));
}

ExpressionId GoReader::read_selector(const Node& node) {
    return read_selected(node, Role::VALUE);
}

ExpressionId GoReader::read_selected(const Node& selector, Role role) {
    const Node operand = selector.child(fields().operand);
    const bool is_name = operand.exists() && operand.type() == "identifier";
    const ExpressionId of = is_name ? out_.use(token(operand, Role::VALUE, Space::QUALIFIER)) : visit(operand);
    return out_.use_member(of, token(selector.child(fields().field), role));
}

ExpressionId GoReader::read_call(const Node& node) {
    const Node function = node.child(fields().function);
    const std::string_view name = text(function);
    const bool is_made = is_predeclared(name) && (name == "new" || name == "make");
    const bool is_grown = is_predeclared(name) && name == "append";
    const ExpressionId called = read_called(function);
    visit(node.child(fields().type_arguments));
    const ExpressionId first = read_first(node.child(fields().arguments));
    if (is_made) {
        return out_.instance(first);
    }
    return is_grown ? first : out_.add(Operation::CALL, called);
}

ExpressionId GoReader::read_called(const Node& function) {
    if (function.type() == "identifier") {
        return out_.use(token(function, Role::CALL));
    }
    return function.type() == "selector_expression" ? read_selected(function, Role::CALL) : visit(function);
}

// Reads all arguments. Returns the first.
ExpressionId GoReader::read_first(const Node& arguments) {
    ExpressionId first = syntax::UNKNOWN;
    bool is_first = true;
    for_each_child(arguments, [&](const Node& argument, TSFieldId) {
        const ExpressionId value = visit(argument);
        if (is_first && !ts_node_is_extra(argument.raw())) {
            first = value;
            is_first = false;
        }
    });
    return first;
}

// Whether no local hides a name of the language.
bool GoReader::is_predeclared(std::string_view name) {
    return out_.look_up(name, Space::VALUE) == out_.add({.operation = Operation::NAME,
                                                         .a = syntax::NO_DECLARATION,
                                                         .b = static_cast<std::uint32_t>(Space::VALUE),
                                                         .name = out_.name(name)});
}

ExpressionId GoReader::read_index(const Node& node) {
    const ExpressionId container = visit(node.child(fields().operand));
    visit(node.child(fields().index));
    return out_.add(Operation::ELEMENT, container);
}

ExpressionId GoReader::read_slice(const Node& node) {
    ExpressionId container = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        const ExpressionId value = visit(child);
        container = field == fields().operand ? value : container;
    });
    return container;
}

ExpressionId GoReader::read_unary(const Node& node) {
    const ExpressionId operand = visit(node.child(fields().operand));
    return text(node.child(fields().operator_)) == "<-" ? out_.add(Operation::ELEMENT, operand) : operand;
}

// `[]T(x)` and `x.(T)`.
ExpressionId GoReader::read_conversion(const Node& node) {
    const Node type = node.child(fields().type);
    if (node.type() == "type_conversion_expression" && type.exists() && type.type() == "generic_type") {
        return read_generic_call(node, type);
    }
    visit(node.child(fields().operand));
    return out_.instance(visit(type));
}

// `f[T](x)`, of a generic function or type, has the form of `functions[at](x)`.
ExpressionId GoReader::read_generic_call(const Node& node, const Node& type) {
    const Node name = type.child(fields().type);
    const bool is_element = out_.is_local(text(name));
    const ExpressionId called = name.exists() && name.type() == "type_identifier" ? out_.use(token(name, Role::CALL))
                                                                                  : read_qualified(name, Role::CALL);
    const syntax::ListId arguments = out_.list(read_all(type.child(fields().type_arguments)));
    visit(node.child(fields().operand));
    return out_.add(Operation::CALL, is_element ? out_.add(Operation::ELEMENT, called)
                                                : out_.add(Operation::GENERIC, called, arguments));
}

ExpressionId GoReader::read_instantiation(const Node& node) {
    const std::vector<ExpressionId> all = read_all(node);
    return all.empty() ? syntax::UNKNOWN
                       : out_.add(Operation::GENERIC, all.front(), out_.list(std::span(all).subspan(1)));
}

ExpressionId GoReader::read_function_literal(const Node& node) {
    out_.open_local();
    ++functions_around_;
    const Signature signature = read_signature(node);
    bind(signature);
    read_body(node.child(fields().body));
    --functions_around_;
    out_.close();
    return out_.instance(out_.add(Operation::FUNCTION, signature.result));
}

}  // namespace host::sources
