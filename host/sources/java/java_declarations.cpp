// Classes, their members, and annotations.
#include "host/sources/java/java_reader.h"

#include <array>
#include <utility>

namespace host::sources {

namespace {

using syntax::Declaration;
using syntax::DeclarationId;
using syntax::Kind;
using syntax::Operation;
using syntax::Role;

}  // namespace

// Annotations are read, and of the words those are told that say something about names.
JavaModifiers JavaReader::read_modifiers(const Node& declaration) {
    JavaModifiers modifiers;
    for_each_child(declaration, [&](const Node& child, TSFieldId) {
        if (child.type() != "modifiers") {
            return;
        }
        for_each_child(
            child,
            [&](const Node& modifier, TSFieldId) {
                modifiers.is_private = modifiers.is_private || modifier.type() == "private";
                modifiers.is_static = modifiers.is_static || modifier.type() == "static";
                visit(modifier);
            },
            true);
    });
    return modifiers;
}

DeclarationId JavaReader::declare(const Node& name, Kind kind, const JavaModifiers& modifiers) {
    return declare(name, text(name), kind, modifiers);
}

DeclarationId JavaReader::declare(const Node& name, std::string_view as, Kind kind, const JavaModifiers& modifiers) {
    return out_.declare({.name = out_.name(as),
                         .written = out_.name(text(name)),
                         .kind = kind,
                         .parent = out_.around(),
                         .offset = is_local() ? 0 : name.begin(),
                         .is_private = modifiers.is_private,
                         .is_static = modifiers.is_static,
                         .is_hidden = is_local()});
}

DeclarationId JavaReader::declare_method(const Node& node) {
    const Node name = node.child(JavaFields::get().name);
    const JavaModifiers modifiers = read_modifiers(node);
    return declare(name, method_name(text(name)), Kind::FUNCTION, modifiers);
}

DeclarationId JavaReader::declare_constructor(const Node& node) {
    const Node name = node.child(JavaFields::get().name);
    const JavaModifiers modifiers = read_modifiers(node);
    return declare(name, constructor_name(text(name)), Kind::FUNCTION, modifiers);
}

// Names of bases are looked up around the class, not in it.
JavaReader::Id JavaReader::read_class(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const DeclarationId id = declare(node.child(at.name), Kind::TYPE, read_modifiers(node));
    if (is_local()) {
        out_.bind(text(node.child(at.name)), out_.add(Operation::LOCAL, out_.add(Operation::DECLARATION, id)));
    }
    out_.open_local();
    ++class_scopes_;
    std::uint32_t number = 0;
    for (const TypeParameter& parameter : read_type_parameters(node.child(at.type_parameters))) {
        out_.bind(parameter.name, out_.add(Operation::PARAMETER, parameter.bound, number++));
    }
    std::vector<Id> bases;
    Construction construction{.own = constructor_name(text(node.child(at.name))), .base = {}};
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "superclass" || child.type() == "super_interfaces" ||
            child.type() == "extends_interfaces") {
            add_bases(child, bases);
            if (child.type() == "superclass" && !bases.empty()) {
                construction.base = constructor_name(simple_name(child));
                construction.base_type = bases.front();
            }
        } else if (child.type() == "permits") {
            visit(child);
        }
    });
    out_.declaration(id).bases = out_.list(bases);
    out_.open(id);
    std::vector<Component> outer = std::exchange(components_, {});
    Construction outer_construction = std::exchange(construction_, std::move(construction));
    declare_components(node.child(at.parameters));
    visit(node.child(at.body));
    components_ = std::move(outer);
    construction_ = std::move(outer_construction);
    out_.close();
    --class_scopes_;
    out_.close();
    return syntax::UNKNOWN;
}

void JavaReader::add_bases(const Node& node, std::vector<Id>& bases) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "type_list") {
            add_bases(child, bases);
        } else if (!is_java_comment(child)) {
            bases.push_back(visit(child));
        }
    });
}

// Binds the type parameters to nothing: their bounds may name any of them. Returns them in order.
std::vector<JavaReader::TypeParameter> JavaReader::read_type_parameters(const Node& node) {
    std::vector<TypeParameter> parameters;
    if (!node.exists()) {
        return parameters;
    }
    std::vector<Node> bounds;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        Node bound;
        for_each_child(child, [&](const Node& part, TSFieldId) {
            if (part.type() == "type_identifier") {
                parameters.push_back({.name = text(part)});
                out_.bind(text(part), syntax::UNKNOWN);
            } else if (part.type() == "type_bound") {
                bound = part;
            } else {
                visit(part);  // an annotation
            }
        });
        bounds.resize(parameters.size());
        if (!bounds.empty()) {
            bounds.back() = bound;
        }
    });
    for (std::size_t at = 0; at < parameters.size(); ++at) {
        std::vector<Id> types;
        if (bounds[at].exists()) {
            add_bases(bounds[at], types);
        }
        parameters[at].bound = types.empty() ? syntax::UNKNOWN : types.front();
    }
    return parameters;
}

// A component of a record is a field and the method that reads it.
void JavaReader::declare_components(const Node& parameters) {
    if (!parameters.exists()) {
        return;
    }
    for_each_child(parameters, [&](const Node& child, TSFieldId) {
        const JavaFields& at = JavaFields::get();
        if (is_java_comment(child)) {
            return;
        }
        const Component component = read_parameter(child);
        Node name = child.child(at.name);
        for_each_child(child, [&](const Node& part, TSFieldId) {
            name = part.type() == "variable_declarator" ? part.child(at.name) : name;
        });
        out_.declaration(declare(name, Kind::VALUE, {.is_private = true})).type = component.value;
        const DeclarationId reader = declare(name, method_name(text(name)), Kind::FUNCTION, {});
        out_.declaration(reader).type = component.type;
        out_.declaration(reader).most_arguments = 0;
        components_.push_back(component);
    });
}

// What calls a method may not say which type parameters it has, so a result of such a type is not known.
JavaReader::Id JavaReader::read_method(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const DeclarationId id = declare_method(node);
    out_.open_local();
    const std::vector<TypeParameter> parameters = read_type_parameters(node.child(at.type_parameters));
    const Id type = lists_of(visit(node.child(at.type)), node.child(at.dimensions));
    out_.declaration(id).type = type;
    for (const TypeParameter& parameter : parameters) {
        out_.bind(parameter.name, out_.add(Operation::LOCAL, parameter.bound));
    }
    read_function(node, id);
    out_.close();
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_constructor(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const DeclarationId id = declare_constructor(node);
    out_.open_local();
    for (const TypeParameter& parameter : read_type_parameters(node.child(at.type_parameters))) {
        out_.bind(parameter.name, out_.add(Operation::LOCAL, parameter.bound));
    }
    read_function(node, id);
    out_.close();
    return syntax::UNKNOWN;
}

// Its parameters are those of the record.
JavaReader::Id JavaReader::read_compact_constructor(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const DeclarationId id = declare_constructor(node);
    out_.open(id);
    out_.open_local();
    for (const Component& component : components_) {
        out_.bind(component.name, component.value);
    }
    visit(node.child(at.body));
    out_.close();
    out_.close();
    return syntax::UNKNOWN;
}

void JavaReader::read_function(const Node& node, DeclarationId id) {
    const JavaFields& at = JavaFields::get();
    out_.open(id);
    out_.open_local();
    bool has_more = false;
    const std::vector<Id> types = bind_parameters(node.child(at.parameters), has_more);
    set_parameters(id, types, has_more);
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "throws") {
            visit(child);
        }
    });
    visit(node.child(at.body));
    out_.close();
    out_.close();
}

void JavaReader::set_parameters(DeclarationId id, const std::vector<Id>& types, bool has_more) {
    const std::uint8_t count = java_count(types.size());
    Declaration& declaration = out_.declaration(id);
    declaration.parameters = out_.list(types);
    declaration.least_arguments = java_count(types.size() - (has_more ? 1 : 0));
    declaration.most_arguments = has_more ? Declaration::ANY_NUMBER : count;
}

JavaReader::Component JavaReader::read_parameter(const Node& node) {
    const JavaFields& at = JavaFields::get();
    read_modifiers(node);
    if (node.type() == "formal_parameter") {
        const Id type = lists_of(declared_type(node.child(at.type)), node.child(at.dimensions));
        return {.name = text(node.child(at.name)), .type = type, .value = out_.instance(type)};
    }
    Component parameter;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "variable_declarator") {
            parameter.name = text(child.child(at.name));
        } else if (child.type() != "modifiers" && !is_java_comment(child)) {
            parameter.type = array_of(visit(child));
            parameter.value = out_.instance(parameter.type);
        }
    });
    return parameter;
}

// Returns their types, and sets whether the last takes any number of arguments.
std::vector<JavaReader::Id> JavaReader::bind_parameters(const Node& parameters, bool& has_more) {
    std::vector<Id> types;
    if (parameters.exists()) {
        for_each_child(parameters, [&](const Node& child, TSFieldId) {
            if (child.type() == "formal_parameter" || child.type() == "spread_parameter") {
                const Component parameter = read_parameter(child);
                out_.bind(parameter.name, parameter.value);
                types.push_back(parameter.type);
                has_more = child.type() == "spread_parameter";
            }
        });
    }
    return types;
}

JavaReader::Id JavaReader::read_annotation_element(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const DeclarationId id = declare_method(node);
    const Id type = lists_of(visit(node.child(at.type)), node.child(at.dimensions));
    out_.declaration(id).type = type;
    out_.declaration(id).most_arguments = 0;
    visit(node.child(at.value));
    return syntax::UNKNOWN;
}

// A field of a local class hides locals around the class.
JavaReader::Id JavaReader::read_field(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const JavaModifiers modifiers = read_modifiers(node);
    const Id type = visit(node.child(at.type));
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() != "variable_declarator") {
            return;
        }
        const Id value = out_.instance(lists_of(type, child.child(at.dimensions)));
        out_.declaration(declare(child.child(at.name), Kind::VALUE, modifiers)).type = value;
        if (is_local()) {
            out_.bind(text(child.child(at.name)), value);
        }
        visit(child.child(at.value));
    });
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_enum_constant(const Node& node) {
    const JavaFields& at = JavaFields::get();
    read_modifiers(node);
    const Id type = out_.add(Operation::DECLARATION, out_.around());
    out_.declaration(declare(node.child(at.name), Kind::VALUE, {.is_static = true})).type = out_.instance(type);
    visit(node.child(at.arguments));
    if (const Node body = node.child(at.body); body.exists()) {
        read_anonymous_class(body, type);
    }
    return syntax::UNKNOWN;
}

void JavaReader::read_anonymous_class(const Node& body, Id base) {
    const DeclarationId id = out_.declare(
        {.kind = Kind::TYPE, .parent = out_.around(), .bases = out_.list(std::array{base}), .is_hidden = true});
    out_.open(id);
    out_.open_local();
    visit(body);
    out_.close();
    out_.close();
}

JavaReader::Id JavaReader::read_annotation(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const Id type = named_type(node.child(at.name), Role::TYPE);
    const Node arguments = node.child(at.arguments);
    if (!arguments.exists()) {
        return syntax::UNKNOWN;
    }
    for_each_child(arguments, [&](const Node& child, TSFieldId) {
        if (child.type() == "element_value_pair") {
            const std::string name = method_name(text(child.child(at.key)));
            out_.use_member(type, {.name = name, .offset = child.begin(), .line = child.line(), .role = Role::KEY});
            visit(child.child(at.value));
        } else {
            visit(child);
        }
    });
    return syntax::UNKNOWN;
}

}  // namespace host::sources
