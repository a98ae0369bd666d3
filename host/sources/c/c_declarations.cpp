// Declarations: what their declarators name, and of which type.
#include "host/sources/c/c_reader.h"

#include <algorithm>
#include <utility>

namespace host::sources {

using syntax::Declaration;
using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::Space;
using syntax::UNKNOWN;

// What stands in front of the declarators. A name that a macro stands for ends in an error before the true type:
// `API int f();`
CReader::Specifiers CReader::specifiers(const Node& node) {
    Specifiers found;
    Node error;
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        const std::string_view type = child.type();
        if (type == "storage_class_specifier" || type == "type_qualifier") {
            const std::string_view word = text(child);
            found.is_static = found.is_static || word == "static";
            found.is_extern = found.is_extern || word == "extern";
            found.is_constant = found.is_constant || word == "constexpr" || word == "inline";
        } else if (field == fields_.type) {
            found.type_node = child;
        } else if (type == "ERROR" && !error.exists()) {
            error = first_child(child);
        }
    });
    if (error.exists() && error.type() == "identifier" && found.type_node.exists() &&
        found.type_node.type() == "type_identifier" && error.begin() > found.type_node.begin()) {
        out_.use(token(found.type_node));
        found.type = out_.use(token(error, Role::TYPE, Space::TYPE));
    } else {
        found.type = type_of(found.type_node);
        found.is_deduced = found.type_node.exists() && found.type_node.type() == "placeholder_type_specifier";
    }
    return found;
}

// Goes from the outermost part of a declarator to the name in it. Each part says what the type so far is made into: of
// `T *(*f)(void)` a pointer, a function, a pointer.
CReader::Declarator CReader::declarator(const Node& node, Id type) {
    Declarator found{.name = {}, .type = type, .is_function = false, .function = {}, .value = {}};
    const auto make = [&](Operation operation) {
        if (found.is_function) {  // what is no function's own parameter list: that of a type of functions
            read_parameters_alone(found.function);
            found.type = out_.add(Operation::FUNCTION, found.type);
            found.is_function = false;
        }
        if (operation != Operation::FUNCTION && found.type != UNKNOWN) {
            found.type = out_.add(operation, found.type);
        }
    };
    for (Node part = node; part.exists();) {
        const std::string_view kind = part.type();
        Node inner = part.child(fields_.declarator);
        if (kind.find("pointer_") != std::string_view::npos) {
            make(Operation::POINTER);
        } else if (kind.ends_with("array_declarator")) {
            make(Operation::LIST);
            visit(part.child(fields_.size));
        } else if (kind.ends_with("function_declarator")) {
            make(Operation::FUNCTION);
            found.function = part;
            found.is_function = true;
            if (inner.exists() && inner.type() == "function_declarator") {
                found.name = name_behind_macro(inner, found.type);
                break;
            }
            found.type = read_trailing_type(part, found.type);
        } else if (kind == "init_declarator") {
            found.value = part.child(fields_.value);
        } else if (kind.ends_with("parenthesized_declarator") || kind.ends_with("reference_declarator") ||
                   kind == "attributed_declarator" || kind == "variadic_declarator") {
            inner = inner.exists() ? inner : first_child(part);
        } else {
            found.name = declared_name(part);
            break;
        }
        part = inner;
    }
    if (found.is_function && !found.name.exists()) {
        make(Operation::FUNCTION);
    }
    return found;
}

// A conversion is named by a type.
Node CReader::declared_name(const Node& name) {
    if (const Node last = last_name(name); last.exists() && last.type() == "operator_cast") {
        type_of(last.child(fields_.type));
    }
    return name;
}

// `API int (f)(void);` looks like a function `int` of what `f` is, which gives a function. Returns `f`, sets its type.
Node CReader::name_behind_macro(const Node& function, Id& type) {
    type = out_.use(token(function.child(fields_.declarator), Role::TYPE, Space::TYPE));
    return first_child(function.child(fields_.parameters)).child(fields_.type);
}

CReader::Id CReader::read_trailing_type(const Node& function, Id type) {
    for_each_child(function, [&](const Node& child, TSFieldId) {
        if (child.type() == "trailing_return_type") {
            type = visit(first_child(child));
        }
    });
    return type;
}

// A `declaration` or `field_declaration`, of any number of declarators.
CReader::Id CReader::read_declaration(const Node& node) {
    const Node type = node.child(fields_.type);
    if (!node.child(fields_.declarator).exists() && type.exists()) {  // of a class, or of what stands in it
        return visit(type);
    }
    const Specifiers stated = specifiers(node);
    const Node of_condition = node.child(fields_.value);  // `if (auto name = value)`
    Declarator last;
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field == fields_.declarator) {
            last = declarator(child, stated.type);
            last.value = last.value.exists() ? last.value : of_condition;
            declare(stated, last);
        } else if (field == fields_.default_value) {
            read_initializer(child, out_.instance(last.type));
        } else if (child.type() == "bitfield_clause") {
            visit_children(child);
        }
    });
    return UNKNOWN;
}

void CReader::declare(const Specifiers& stated, const Declarator& declarator) {
    const std::string_view kind = declarator.name.exists() ? declarator.name.type() : std::string_view();
    if (kind.empty() || declarator.name.begin() == declarator.name.end()) {
        read_initializer(declarator.value, UNKNOWN);
    } else if (place_.is_local) {
        bind_variable(stated, declarator);
    } else if (kind == "operator_cast" || (declarator.is_function && !is_variable_after_all(declarator))) {
        const syntax::DeclarationId id = declare_function(stated, declarator, false);
        out_.open(id);
        read_parameters_alone(declarator.function);
        out_.close();
    } else {
        declare_variable(stated, declarator);
    }
}

void CReader::declare_variable(const Specifiers& stated, const Declarator& declarator) {
    if (declarator.name.type() == "structured_binding_declarator") {
        declare_structure(stated, declarator);
        return;
    }
    const QualifiedName name = qualified_name(declarator.name);
    const bool has_value = declarator.value.exists();
    const bool is_elsewhere =
        (stated.is_extern && !has_value) || (place_.is_class && stated.is_static && !stated.is_constant && !has_value);
    const Id stated_type = declarator.is_function ? out_.add(Operation::FUNCTION, declarator.type) : declarator.type;
    const syntax::DeclarationId id = out_.declare({.name = out_.name(text(name.name)),
                                                   .kind = Kind::VALUE,
                                                   .parent = place_.parent,
                                                   .owner = name.owner,
                                                   .type = out_.instance(stated_type),
                                                   .offset = name.name.begin(),
                                                   .is_private = is_private(stated) && name.owner == UNKNOWN,
                                                   .is_definition = !is_elsewhere,
                                                   .is_static = stated.is_static && place_.is_class});
    const Id value = read_initializer(declarator.value, out_.instance(stated_type));
    if (stated.is_deduced) {
        out_.declaration(id).type = value;
    }
}

// `auto [key, value]` outside of functions.
void CReader::declare_structure(const Specifiers& stated, const Declarator& declarator) {
    const Id value = read_initializer(declarator.value, UNKNOWN);
    std::uint32_t number = 0;
    for_each_child(declarator.name, [&](const Node& name, TSFieldId) {
        out_.declare({.name = out_.name(text(name)),
                      .kind = Kind::VALUE,
                      .parent = place_.parent,
                      .type = out_.add(Operation::COMPONENT, value, number++),
                      .offset = name.begin(),
                      .is_private = is_private(stated)});
    });
}

bool CReader::is_private(const Specifiers& stated) const {
    return place_.is_anonymous || (stated.is_static && !place_.is_class);
}

// A variable of a function. A function that is declared in one is looked up where all are.
void CReader::bind_variable(const Specifiers& stated, const Declarator& declarator) {
    const bool is_function = declarator.is_function && !is_variable_after_all(declarator);
    const Id declared = out_.instance(declarator.type);
    if (is_function || stated.is_extern) {
        read_parameters_alone(is_function ? declarator.function : Node());
        return;
    }
    if (declarator.is_function) {  // `Type name(value, value);`
        for_each_child(declarator.function.child(fields_.parameters), [&](const Node& each, TSFieldId) {
            named(each.child(fields_.type), Role::VALUE, Space::VALUE, Declaration::ANY_NUMBER);
        });
    }
    const Id value = read_initializer(declarator.value, declared);
    if (declarator.name.type() == "structured_binding_declarator") {
        bind_structure(declarator.name, value);
    } else {
        out_.bind(text(declarator.name), stated.is_deduced ? value : declared);
    }
}

// `auto [key, value]`, of an element of a map or of a tuple.
void CReader::bind_structure(const Node& pattern, Id value) {
    std::uint32_t number = 0;
    for_each_child(pattern, [&](const Node& name, TSFieldId) {
        out_.bind(text(name), out_.add(Operation::COMPONENT, value, number++));
    });
}

// Returns the value itself.
CReader::Id CReader::read_initializer(const Node& value, Id initialized) {
    if (!value.exists()) {
        return UNKNOWN;
    }
    if (value.type() == "initializer_list") {
        read_elements(value, initialized);
        return initialized;
    }
    if (value.type() == "argument_list") {
        visit_children(value);
        return initialized;
    }
    return visit(value);
}

// Whether what looks like a function with nameless parameters is a variable with values: `Type name(other);`
bool CReader::is_variable_after_all(const Declarator& declarator) const {
    bool has_value = false;
    bool has_parameter = false;
    for_each_child(declarator.function.child(fields_.parameters), [&](const Node& each, TSFieldId) {
        const Node type = each.child(fields_.type);
        const bool is_name = type.exists() && type.type() == "type_identifier" && each.named_children() == 1;
        has_value = has_value || (is_name && out_.is_local(text(type)));
        has_parameter = has_parameter || !is_name;
    });
    return has_value && !has_parameter && dialect_.is_cpp;
}

// `TEST(Suite, Name) { ... }`: a function without a type that is no member is the call of a macro.
bool CReader::is_macro_call(const Node& function, const Declarator& declarator) const {
    return !function.child(fields_.type).exists() && declarator.name.exists() && !place_.is_class &&
           declarator.name.type() == "identifier" && dialect_.is_cpp;
}

// A `typedef`. One of a struct that has no name of its own gives it one; one that repeats its name adds nothing.
CReader::Id CReader::read_type_definition(const Node& node) {
    const Node type = node.child(fields_.type);
    const Node first = node.child(fields_.declarator);
    const bool has_body = type.exists() && type.child(fields_.body).exists();
    const Node tag = type.exists() ? type.child(fields_.name) : Node();
    const bool is_name = has_body && !tag.exists() && first.exists() && first.type() == "type_identifier";
    const bool is_announced = !has_body && !place_.is_local && type.type().ends_with("_specifier") && tag.exists() &&
                              tag.type() == "type_identifier" && !is_tag(text(tag));
    const Id named = is_name ? specifier(type, true, first) : is_announced ? announced_type(tag) : type_of(type);
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field == fields_.declarator && !(is_name && child == first)) {
            Declarator alias = declarator(child, named);
            if (alias.is_function) {
                read_parameters_alone(alias.function);
                alias.type = out_.add(Operation::FUNCTION, alias.type);
            }
            if (alias.name.exists()) {
                declare_alias(alias.name, alias.type, has_body && text(tag) == text(alias.name));
            }
        }
    });
    return UNKNOWN;
}

void CReader::declare_alias(const Node& name, Id type, bool is_repeated) {
    if (place_.is_local) {
        out_.bind(text(name), type);
    } else {
        out_.declare({.name = out_.name(text(name)),
                      .kind = Kind::ALIAS,
                      .parent = place_.parent,
                      .type = type,
                      .offset = name.begin(),
                      .is_private = place_.is_anonymous,
                      .is_hidden = is_repeated});
    }
}

}  // namespace host::sources
