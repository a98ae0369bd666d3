// What Go files declare and import, but for types.
#include "host/sources/go/go_reader.h"

#include <algorithm>

namespace host::sources {

using syntax::Declaration;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;

ExpressionId GoReader::read_package(const Node& node) {
    is_before_package_ = false;
    out_.set_constraint(constraint_);
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "package_identifier") {
            out_.set_package(text(child));
        }
    });
    return syntax::UNKNOWN;
}

ExpressionId GoReader::read_import(const Node& node) {
    constexpr std::string_view QUOTES = "\"`";
    std::string_view path = text(node.child(fields().path));
    path.remove_prefix(std::min(path.find_first_not_of(QUOTES), path.size()));
    path = path.substr(0, path.find_first_of(QUOTES));
    const Node name = node.child(fields().name);
    const bool is_star = name.exists() && name.type() == "dot";
    out_.import({.name = is_star ? 0 : out_.name(text(name)), .module = out_.name(path), .is_star = is_star});
    return syntax::UNKNOWN;
}

ExpressionId GoReader::read_function(const Node& node) {
    const Node name = node.child(fields().name);
    const Node receiver = node.child(fields().receiver);
    Declaration function{.name = out_.name(text(name)), .kind = Kind::FUNCTION, .offset = name.begin()};
    out_.open_local();
    ++functions_around_;
    Signature of_receiver;
    if (receiver.exists()) {
        function.owner = read_receiver(receiver, of_receiver);
    }
    const Signature signature = read_signature(node);
    function.type = signature.result;
    bind(of_receiver);
    bind(signature);
    read_body(node.child(fields().body));
    --functions_around_;
    out_.close();
    if (text(name) != BLANK) {
        out_.declare(function);
    }
    return syntax::UNKNOWN;
}

// Returns its type. What stands in brackets behind that are new names of the type's parameters.
ExpressionId GoReader::read_receiver(const Node& receiver, Signature& signature) {
    Node type;
    Node name;
    for_each_child(receiver, [&](const Node& parameter, TSFieldId) {
        type = parameter.child(fields().type);
        name = parameter.child(fields().name);
    });
    while (type.exists() && (type.type() == "pointer_type" || type.type() == "parenthesized_type")) {
        type = type.named_child(0);
    }
    if (type.exists() && type.type() == "generic_type") {
        std::uint32_t number = 0;
        for_each_child(type.child(fields().type_arguments), [&](const Node& parameter, TSFieldId) {
            out_.bind(text(parameter), out_.add(Operation::PARAMETER, syntax::UNKNOWN, number++));
        });
        type = type.child(fields().type);
    }
    const ExpressionId owner = visit(type);
    signature.locals.emplace_back(text(name), out_.instance(owner));
    return owner;
}

ExpressionId GoReader::read_variables(const Node& node) {
    const std::vector<Node> names = children(node, fields().name);
    const ExpressionId type = visit(node.child(fields().type));
    std::vector<ExpressionId> values = read_values(node.child(fields().value), names.size());
    if (type != syntax::UNKNOWN) {
        values.assign(names.size(), out_.instance(type));
    }
    declare_values(names, values);
    return syntax::UNKNOWN;
}

// A constant without a value has that of the one above.
ExpressionId GoReader::read_constants(const Node& node) {
    std::vector<ExpressionId> values;
    for_each_child(node, [&](const Node& constant, TSFieldId) {
        const std::vector<Node> names = children(constant, fields().name);
        const ExpressionId type = visit(constant.child(fields().type));
        const Node value = constant.child(fields().value);
        if (value.exists()) {
            values = read_values(value, names.size());
        }
        if (type != syntax::UNKNOWN) {
            values.assign(names.size(), out_.instance(type));
        }
        declare_values(names, values);
    });
    return syntax::UNKNOWN;
}

void GoReader::declare_values(const std::vector<Node>& names, const std::vector<ExpressionId>& values) {
    for (std::size_t at = 0; at < names.size(); ++at) {
        const std::string_view name = text(names[at]);
        const ExpressionId value = at < values.size() ? values[at] : syntax::UNKNOWN;
        if (functions_around_ > 0) {
            out_.bind(name, value);
        } else if (name != BLANK) {
            out_.declare({.name = out_.name(name), .kind = Kind::VALUE, .type = value, .offset = names[at].begin()});
        }
    }
}

std::vector<Node> GoReader::children(const Node& node, TSFieldId field) {
    std::vector<Node> found;
    for_each_child(node, [&](const Node& child, TSFieldId of) {
        if (of == field) {
            found.push_back(child);
        }
    });
    return found;
}

}  // namespace host::sources
