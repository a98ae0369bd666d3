// Types of Go, as the text puts them together.
#include "host/sources/go/go_reader.h"

#include <algorithm>

namespace host::sources {

using syntax::ExpressionId;
using syntax::Operation;
using syntax::Role;
using syntax::Space;

ExpressionId GoReader::read_named_type(const Node& node) {
    return out_.use(token(node, Role::TYPE, Space::TYPE));
}

ExpressionId GoReader::read_qualified_type(const Node& node) {
    return read_qualified(node, Role::TYPE);
}

ExpressionId GoReader::read_qualified(const Node& node, Role role) {
    const ExpressionId package = out_.use(token(node.child(fields().package), Role::VALUE, Space::QUALIFIER));
    return out_.use_member(package, token(node.child(fields().name), role, Space::TYPE));
}

ExpressionId GoReader::read_generic_type(const Node& node) {
    const ExpressionId type = visit(node.child(fields().type));
    return out_.add(Operation::GENERIC, type, out_.list(read_all(node.child(fields().type_arguments))));
}

std::vector<ExpressionId> GoReader::read_all(const Node& list) {
    std::vector<ExpressionId> all;
    for_each_child(list, [&](const Node& child, TSFieldId) { all.push_back(visit(child)); });
    return all;
}

ExpressionId GoReader::read_list_type(const Node& node) {
    visit(node.child(fields().length));
    return out_.add(Operation::LIST, visit(node.child(fields().element)));
}

ExpressionId GoReader::read_map_type(const Node& node) {
    const ExpressionId key = visit(node.child(fields().key));
    return out_.add(Operation::MAP, key, visit(node.child(fields().value)));
}

// What is received from a channel is what a loop over it gives first, where other containers give a key.
ExpressionId GoReader::read_channel_type(const Node& node) {
    const ExpressionId element = visit(node.child(fields().value));
    return out_.add(Operation::MAP, element, element);
}

ExpressionId GoReader::read_function_type(const Node& node) {
    return out_.add(Operation::FUNCTION, read_signature(node).result);
}

// What a generic function gives is of a type that its caller chooses. In the function, a value of such a type has the
// members that the constraint states.
GoReader::Signature GoReader::read_signature(const Node& function) {
    Signature signature;
    const Node type_parameters = function.child(fields().type_parameters);
    bind_type_parameters(type_parameters, [](const Node&) { return syntax::UNKNOWN; });
    const Node result = function.child(fields().result);
    if (result.exists() && result.type() == "parameter_list") {
        const std::vector<ExpressionId> types = read_parameters(result, signature);
        signature.result = types.size() == 1 ? types.front() : out_.add(Operation::TUPLE, out_.list(types));
    } else {
        signature.result = visit(result);
    }
    bind_type_parameters(type_parameters, [&](const Node& parameter) { return visit(parameter.child(fields().type)); });
    read_parameters(function.child(fields().parameters), signature);
    return signature;
}

// Returns the type of each. A type that several share is read once.
std::vector<ExpressionId> GoReader::read_parameters(const Node& list, Signature& signature) {
    std::vector<ExpressionId> types;
    for_each_child(list, [&](const Node& parameter, TSFieldId) {
        const Node stated = parameter.child(fields().type);
        if (!stated.exists()) {
            return;
        }
        ExpressionId type = visit(stated);
        if (parameter.type() == "variadic_parameter_declaration") {
            type = out_.add(Operation::LIST, type);
        }
        const std::vector<Node> names = children(parameter, fields().name);
        for (const Node& name : names) {
            signature.locals.emplace_back(text(name), out_.instance(type));
        }
        types.insert(types.end(), std::max<std::size_t>(names.size(), 1), type);
    });
    return types;
}

void GoReader::bind_type_parameters(const Node& list, const std::function<ExpressionId(const Node&)>& type_of) {
    for_each_child(list, [&](const Node& parameter, TSFieldId) {
        const ExpressionId type = type_of(parameter);
        for (const Node& name : children(parameter, fields().name)) {
            out_.bind(text(name), type);
        }
    });
}

void GoReader::bind(const Signature& signature) {
    for (const auto& [name, value] : signature.locals) {
        out_.bind(name, value);
    }
}

}  // namespace host::sources
