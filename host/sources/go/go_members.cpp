// Declarations of Go's types, and of their fields and methods.
#include "host/sources/go/go_reader.h"

namespace host::sources {

using syntax::DeclarationId;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;

ExpressionId GoReader::read_type(const Node& node) {
    const Node name = node.child(fields().name);
    const DeclarationId id = out_.declare({.name = out_.name(text(name)),
                                           .kind = Kind::TYPE,
                                           .offset = name.begin(),
                                           .is_hidden = functions_around_ > 0,
                                           .is_local = functions_around_ > 0});
    out_.bind(text(name), out_.add(Operation::DECLARATION, id));
    out_.open_local();
    number_type_parameters(node.child(fields().type_parameters));
    const Node type = node.child(fields().type);
    if (type.exists() && (type.type() == "struct_type" || type.type() == "interface_type")) {
        read_members(type, id);
    } else {
        const ExpressionId stated = visit(type);
        out_.declaration(id).type = stated;
    }
    out_.close();
    return syntax::UNKNOWN;
}

ExpressionId GoReader::read_alias(const Node& node) {
    const Node name = node.child(fields().name);
    const ExpressionId type = visit(node.child(fields().type));
    out_.bind(text(name), type);
    if (functions_around_ == 0) {
        out_.declare({.name = out_.name(text(name)), .kind = Kind::ALIAS, .type = type, .offset = name.begin()});
    }
    return syntax::UNKNOWN;
}

// A type without a name, as that of a field or a variable.
ExpressionId GoReader::read_type_with_members(const Node& node) {
    const DeclarationId id = out_.declare({.kind = Kind::TYPE, .offset = node.begin(), .is_hidden = true});
    read_members(node, id);
    return out_.add(Operation::DECLARATION, id);
}

void GoReader::number_type_parameters(const Node& list) {
    std::uint32_t number = 0;
    for_each_child(list, [&](const Node& parameter, TSFieldId) {
        const ExpressionId bound = visit(parameter.child(fields().type));
        for (const Node& name : children(parameter, fields().name)) {
            out_.bind(text(name), out_.add(Operation::PARAMETER, bound, number++));
        }
    });
}

void GoReader::read_members(const Node& type, DeclarationId owner) {
    std::vector<ExpressionId> bases;
    const auto read = [&](const Node& member, TSFieldId) {
        if (member.type() == "field_declaration") {
            read_field(member, owner, bases);
        } else if (member.type() == "method_elem") {
            read_interface_method(member, owner);
        } else {
            bases.push_back(visit(member));
        }
    };
    for_each_child(type, [&](const Node& child, TSFieldId field) {
        if (child.type() == "field_declaration_list") {
            for_each_child(child, read);
        } else {
            read(child, field);
        }
    });
    std::erase(bases, syntax::UNKNOWN);
    out_.declaration(owner).bases = out_.list(bases);
}

// A field without a name is embedded: it has that of its type, whose members it lends.
void GoReader::read_field(const Node& node, DeclarationId owner, std::vector<ExpressionId>& bases) {
    const Node stated = node.child(fields().type);
    if (!stated.exists()) {
        return;
    }
    const ExpressionId type = visit(stated);
    std::vector<Node> names = children(node, fields().name);
    if (names.empty()) {
        bases.push_back(type);
        names.push_back(name_of_embedded(stated));
    }
    for (const Node& name : names) {
        out_.declare({.name = out_.name(text(name)),
                      .kind = Kind::VALUE,
                      .parent = owner,
                      .type = out_.instance(type),
                      .offset = name.begin(),
                      .is_hidden = functions_around_ > 0});
    }
}

Node GoReader::name_of_embedded(const Node& type) {
    if (type.type() == "generic_type") {
        return name_of_embedded(type.child(fields().type));
    }
    return type.type() == "qualified_type" ? type.child(fields().name) : type;
}

void GoReader::read_interface_method(const Node& node, DeclarationId owner) {
    const Node name = node.child(fields().name);
    const ExpressionId result = read_signature(node).result;
    out_.declare({.name = out_.name(text(name)),
                  .kind = Kind::FUNCTION,
                  .parent = owner,
                  .type = result,
                  .offset = name.begin(),
                  .is_hidden = functions_around_ > 0});
}

}  // namespace host::sources
