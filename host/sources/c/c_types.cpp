// Types: names of types, and structs, unions, classes and enums with what stands in them.
#include "host/sources/c/c_reader.h"

#include <string>
#include <utility>

namespace host::sources {

using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::Space;
using syntax::UNKNOWN;

namespace {

bool is_c_specifier(const Node& node) {
    const std::string_view type = node.type();
    return type == "struct_specifier" || type == "union_specifier" || type == "class_specifier" ||
           type == "enum_specifier";
}

}  // namespace

// Returns the type that a node in the place of a type means.
CReader::Id CReader::type_of(const Node& node) {
    return node.exists() && is_c_specifier(node) ? specifier(node, true, {}) : visit(node);
}

CReader::Id CReader::read_type_name(const Node& node) {
    return out_.use(token(node, Role::TYPE, Space::TYPE));
}

CReader::Id CReader::read_builtin_type(const Node& /*node*/) {
    return foreign();
}

// `const T*` in a cast, an argument of a template.
CReader::Id CReader::read_described_type(const Node& node) {
    const Id type = type_of(node.child(fields_.type));
    return declarator(node.child(fields_.declarator), type).type;
}

CReader::Id CReader::read_deduced_type(const Node& node) {
    visit_children(node);
    return UNKNOWN;
}

// `decltype(value)`: what has the type of a value is as good as that value.
CReader::Id CReader::read_type_of_value(const Node& node) {
    return visit(first_child(node));
}

// `MACRO(type)` in the place of a type.
CReader::Id CReader::read_macro_type(const Node& node) {
    out_.use(token(node.child(fields_.name), Role::CALL));
    type_of(node.child(fields_.type));
    return UNKNOWN;
}

// One that no declarator follows: a declaration of its own.
CReader::Id CReader::read_free_specifier(const Node& node) {
    return specifier(node, false, {});
}

// Returns the type. `alias` is the name that a typedef gives it, if any.
CReader::Id CReader::specifier(const Node& node, bool is_type, const Node& alias) {
    const bool is_enum = node.type() == "enum_specifier";
    const Node name = node.child(fields_.name);
    if (node.child(fields_.body).exists()) {
        if (place_.is_local) {
            return is_enum ? read_enum(node, alias) : read_local_class(node);
        }
        return is_enum ? read_enum(node, alias) : read_class(node, alias, is_type);
    }
    const bool is_plain = name.exists() && name.type() == "type_identifier";
    if (is_type && is_plain) {
        const bool is_local = dialect_.is_cpp ? out_.is_local(text(name)) : local_tags_.contains(text(name));
        return is_local ? UNKNOWN : out_.use(token(name, Role::TYPE, Space::TAG));
    }
    if (is_type || !is_plain) {
        return visit(name);
    }
    if (!place_.is_local) {
        announce(name);
    }
    return UNKNOWN;
}

// `typedef struct s s_t;` declares s, unless an include has; then it refers to it.
CReader::Id CReader::announced_type(const Node& tag) {
    const syntax::DeclarationId id = announce(tag);
    out_.mention(out_.add(Operation::DECLARATION, id), token(tag, Role::TYPE, Space::TAG));
    return out_.look_up(text(tag), Space::TAG);
}

// Declares a type that is defined elsewhere, if at all.
syntax::DeclarationId CReader::announce(const Node& tag) {
    tags_.insert(text(tag));
    return out_.declare({.name = out_.name(text(tag)),
                         .kind = Kind::TYPE,
                         .parent = parent_of_tags(),
                         .offset = tag.begin(),
                         .is_private = place_.is_anonymous,
                         .is_definition = false});
}

// In C, what is declared in a struct stands beside it.
syntax::DeclarationId CReader::parent_of_tags() const {
    return dialect_.is_cpp ? place_.parent : syntax::NO_DECLARATION;
}

CReader::Id CReader::read_class(const Node& node, const Node& alias, bool is_type) {
    const Node stated = node.child(fields_.name);
    if (!stated.exists() && !alias.exists() && !is_type) {  // its members are those of what is around it
        visit(node.child(fields_.body));
        return UNKNOWN;
    }
    const bool is_specialized = stated.exists() && stated.type() == "template_type";
    if (is_specialized) {
        template_arguments(stated.child(fields_.arguments));
    }
    const QualifiedName name = qualified_name(stated.exists() && !is_specialized ? stated : alias);
    const std::string_view spelling = is_specialized ? text(stated) : text(name.name);
    const syntax::ListId bases = this->bases(node);
    const Node& place = is_specialized ? stated : name.name.exists() ? name.name : node;
    tags_.insert(spelling);
    const syntax::DeclarationId id = out_.declare({.name = out_.name(spelling),
                                                   .kind = Kind::TYPE,
                                                   .parent = parent_of_tags(),
                                                   .owner = name.owner,
                                                   .bases = bases,
                                                   .offset = place.begin(),
                                                   .is_private = place_.is_anonymous,
                                                   .is_hidden = spelling.empty()});
    read_members(node, id, spelling);
    return out_.add(Operation::DECLARATION, id);
}

void CReader::read_members(const Node& node, syntax::DeclarationId id, std::string_view name) {
    const syntax::DeclarationId outside = place_.is_class ? place_.outside : place_.parent;
    const Place before = std::exchange(
        place_,
        {.parent = id, .outside = outside, .class_name = name, .is_class = true, .is_anonymous = place_.is_anonymous});
    out_.open(id);
    visit(node.child(fields_.body));
    out_.close();
    place_ = before;
}

// A class in a function is a local, and so are its members within it.
CReader::Id CReader::read_local_class(const Node& node) {
    const Node name = node.child(fields_.name);
    bases(node);
    bind_local_tag(name);
    ++local_classes_;
    out_.open_local();
    visit(node.child(fields_.body));
    out_.close();
    --local_classes_;
    return UNKNOWN;
}

void CReader::bind_local_tag(const Node& name) {
    if (name.exists() && dialect_.is_cpp) {
        out_.bind(text(name), UNKNOWN);
    } else if (name.exists()) {
        local_tags_.insert(text(name));
    }
}

syntax::ListId CReader::bases(const Node& node) {
    std::vector<Id> types;
    for_each_child(node, [&](const Node& clause, TSFieldId) {
        if (clause.type() == "base_class_clause") {
            for_each_child(clause, [&](const Node& base, TSFieldId) {
                const Id type = visit(base);
                if (type != UNKNOWN) {
                    types.push_back(type);
                }
            });
        }
    });
    return out_.list(types);
}

CReader::Id CReader::read_enum(const Node& node, const Node& alias) {
    const Node stated = node.child(fields_.name);
    visit(node.child(fields_.base));
    Enumeration enumeration{.parent = parent_of_tags(), .value = foreign()};
    Id type = UNKNOWN;
    if (place_.is_local) {
        bind_local_tag(stated);
    } else if (stated.exists() || alias.exists()) {
        const QualifiedName name = qualified_name(stated.exists() ? stated : alias);
        const syntax::DeclarationId id = out_.declare({.name = out_.name(text(name.name)),
                                                       .kind = Kind::TYPE,
                                                       .parent = parent_of_tags(),
                                                       .owner = name.owner,
                                                       .offset = name.name.begin(),
                                                       .is_private = place_.is_anonymous});
        type = out_.add(Operation::DECLARATION, id);
        enumeration.value = out_.instance(type);
        if (has_token(node, "class") || has_token(node, "struct")) {
            enumeration.parent = id;
        }
    }
    const Enumeration before = std::exchange(enumeration_, enumeration);
    visit(node.child(fields_.body));
    enumeration_ = before;
    return type;
}

CReader::Id CReader::read_enumerator(const Node& node) {
    const Node name = node.child(fields_.name);
    visit(node.child(fields_.value));
    if (place_.is_local) {
        out_.bind(text(name), UNKNOWN);
        return UNKNOWN;
    }
    out_.declare({.name = out_.name(text(name)),
                  .kind = Kind::VALUE,
                  .parent = enumeration_.parent,
                  .type = enumeration_.value,
                  .offset = name.begin(),
                  .is_private = place_.is_anonymous,
                  .is_static = true});
    return UNKNOWN;
}

}  // namespace host::sources
