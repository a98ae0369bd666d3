// Functions: their parameters, and what stands in their bodies.
#include "host/sources/c/c_reader.h"

#include <algorithm>
#include <utility>

namespace host::sources {

using syntax::Declaration;
using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::UNKNOWN;

syntax::DeclarationId CReader::declare_function(const Specifiers& stated, const Declarator& declarator,
                                                bool is_definition) {
    const QualifiedName name = qualified_name(declarator.name);
    Declaration function{.name = out_.name(text(name.name)),
                         .kind = Kind::FUNCTION,
                         .parent = place_.parent,
                         .owner = name.owner,
                         .type = declarator.type,
                         .offset = name.name.begin(),
                         .is_private = is_private(stated) && name.owner == UNKNOWN,
                         .is_definition = is_definition,
                         .is_static = stated.is_static && place_.is_class,
                         .is_hidden = place_.is_friend && !is_definition};
    const std::string_view class_name = name.owner == UNKNOWN ? place_.class_name : name.last_qualifier;
    if (!stated.type_node.exists() && !class_name.empty() && text(name.name) == class_name) {
        function.kind = Kind::CONSTRUCTOR;
    }
    count_arguments(declarator.function, function);
    return out_.declare(function);
}

// Parameters of what has no body here: their types and defaults are read, their names bound for no longer than that.
void CReader::read_parameters_alone(const Node& function) {
    if (function.exists()) {
        out_.open_local();
        visit(function.child(fields_.parameters));
        out_.close();
    }
}

CReader::Id CReader::read_parameter(const Node& node) {
    const Specifiers stated = specifiers(node);
    const Declarator parameter = declarator(node.child(fields_.declarator), stated.type);
    visit(node.child(fields_.default_value));
    if (parameter.name.exists()) {
        const Id type = parameter.is_function ? out_.add(Operation::FUNCTION, parameter.type) : parameter.type;
        read_parameters_alone(parameter.is_function ? parameter.function : Node());
        out_.bind(text(parameter.name), out_.instance(type));
    }
    return UNKNOWN;
}

// Sets how many arguments a function takes; any number where it does not say.
void CReader::count_arguments(const Node& function, Declaration& declaration) const {
    constexpr std::size_t MOST = Declaration::ANY_NUMBER - 1;
    const Node parameters = function.child(fields_.parameters);
    std::size_t all = 0;
    std::size_t needed = 0;
    bool is_open = !parameters.exists();
    for_each_child(
        parameters,
        [&](const Node& each, TSFieldId) {
            const std::string_view kind = each.type();
            if (kind == "parameter_declaration") {
                const bool is_void = text(each) == "void";
                all += is_void ? 0 : 1;
                needed += is_void ? 0 : 1;
            } else if (kind == "optional_parameter_declaration" || kind == "identifier") {
                ++all;
                needed += kind == "identifier" ? 1 : 0;
            } else if (kind != "comment" && kind != "," && kind != "(" && kind != ")") {
                is_open = true;  // "...", a pack, an error
            }
        },
        true);
    is_open = is_open || (all == 0 && !dialect_.is_cpp && text(parameters) == "()");
    declaration.least_arguments = static_cast<std::uint8_t>(std::min(needed, MOST));
    declaration.most_arguments = is_open || all > MOST ? Declaration::ANY_NUMBER : static_cast<std::uint8_t>(all);
}

// No function stands in another one, unless branches of an #if hold only one of two brackets.
bool CReader::is_behind_damage(const Declarator& declarator) const {
    return local_classes_ == 0 && (!dialect_.is_cpp || declarator.name.type() == "qualified_identifier");
}

CReader::Id CReader::read_function(const Node& node) {
    const Specifiers stated = specifiers(node);
    const Declarator found = declarator(node.child(fields_.declarator), stated.type);
    if (!found.name.exists() || (place_.is_local && !is_behind_damage(found))) {
        read_body(node, found, out_.around());
    } else if (is_macro_call(node, found)) {
        out_.use(token(found.name, Role::CALL));
        read_body(node, {}, out_.around());
    } else if (found.is_function || found.name.type() == "operator_cast" ||
               text(found.name).find("operator") != std::string_view::npos) {
        read_body(node, found, declare_function(stated, found, true));
    } else {
        visit(node.child(fields_.body));
    }
    return UNKNOWN;
}

void CReader::read_body(const Node& function, const Declarator& declarator, syntax::DeclarationId id) {
    const Place before =
        std::exchange(place_, {.parent = place_.parent, .class_name = place_.class_name, .is_local = true});
    out_.open(id);
    out_.open_local();
    for_each_child(declarator.function.child(fields_.parameters), [&](const Node& parameter, TSFieldId) {
        if (parameter.type() == "identifier") {  // its type stands behind the list
            out_.bind(text(parameter), UNKNOWN);
        } else {
            visit(parameter);
        }
    });
    for_each_child(function, [&](const Node& child, TSFieldId field) {
        const std::string_view kind = child.type();
        const bool is_part = field == fields_.body || kind == "declaration" || kind == "field_initializer_list" ||
                             kind == "try_statement";
        if (is_part) {
            visit(child);
        }
    });
    out_.close();
    out_.close();
    place_ = before;
    if (!place_.is_local) {
        local_tags_.clear();
    }
}

}  // namespace host::sources
