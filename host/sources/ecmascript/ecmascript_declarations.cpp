// Declarations: types, namespaces, and their members.
#include "host/sources/ecmascript/ecmascript_reader.h"
#include "host/syntax/global_namespace.h"

#include <utility>
#include <vector>

namespace host::sources {

namespace {

using std::string_view;
using syntax::DeclarationId;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::UNKNOWN;

}  // namespace

// Declares what is a member of the type or namespace around it, or stands at the top.
DeclarationId EcmascriptReader::declare(const Node& name, Kind kind) {
    const bool is_local = context_.locals > 0;  // which only the scope around it has a name for
    const string_view spelling = name_text(name);
    const DeclarationId declared = out_.declare({.name = is_local ? 0 : out_.name(spelling),
                                                 .kind = kind,
                                                 .parent = is_local ? syntax::NO_DECLARATION : context_.container,
                                                 .offset = name.begin(),
                                                 .is_private = !context_.is_exported,
                                                 .is_hidden = is_local,
                                                 .is_local = is_local});
    if (!is_local && context_.container == syntax::NO_DECLARATION) {
        top_[spelling].push_back(declared);
    }
    return declared;
}

// A member can be named by all who have its type.
DeclarationId EcmascriptReader::declare_member(const Node& name, Kind kind) {
    declared_members_.emplace(context_.container, name_text(name));
    return out_.declare({.name = out_.name(name_text(name)),
                         .kind = kind,
                         .parent = context_.container,
                         .offset = name.begin(),
                         .is_static = context_.is_static,
                         .is_hidden = context_.locals > 0});
}

// A type without a name: of an object literal, or of members that the text lists.
DeclarationId EcmascriptReader::declare_hidden_type() {
    return out_.declare({.kind = Kind::TYPE, .parent = out_.around(), .is_private = true, .is_hidden = true});
}

// Declares a type or namespace. Several of one name are one: the later ones add members to the first, which is
// returned.
DeclarationId EcmascriptReader::declare_merged(const Node& name, Kind kind) {
    const DeclarationId declared = declare(name, kind);
    if (context_.locals > 0) {
        out_.bind(text(name), out_.add(Operation::DECLARATION, declared));
        return declared;
    }
    const auto [first, is_first] = merged_.try_emplace({context_.container, kind, name_text(name)}, declared);
    if (!is_first) {
        out_.declaration(declared).owner = out_.add(Operation::DECLARATION, first->second);
        if (context_.is_exported) {
            out_.declaration(first->second).is_private = false;
        }
    }
    return first->second;
}

// Type parameters of a type, which those who name it give arguments for.
void EcmascriptReader::bind_class_parameters(const Node& node) {
    std::uint32_t number = 0;
    for (const Parameter& parameter : type_parameters(node)) {
        const ExpressionId bound = visit(parameter.node.child(fields_.constraint));
        visit(parameter.node.child(fields_.value));
        out_.bind(parameter.name, out_.add(Operation::PARAMETER, bound, number++));
    }
}

ExpressionId EcmascriptReader::class_declaration(const Node& node) {
    const Node name = node.child(fields_.name);
    if (name.exists()) {
        read_class(node, declare_merged(name, Kind::TYPE));
    }
    return UNKNOWN;
}

ExpressionId EcmascriptReader::class_expression(const Node& node) {
    const DeclarationId type = declare_hidden_type();
    read_class(node, type);
    return out_.add(Operation::DECLARATION, type);
}

void EcmascriptReader::read_class(const Node& node, DeclarationId type) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "decorator") {
            visit(child);
        }
    });
    const TypeScope scope(*this);
    bind_documented_parameters(node);
    if (const Node name = node.child(fields_.name); name.exists() && node.type() == "class") {
        out_.bind(text(name), out_.add(Operation::DECLARATION, type));
    }
    bind_class_parameters(node);
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "class_heritage") {
            add_bases(type, read_heritage(child));
        }
    });
    read_members(node.child(fields_.body), type);
}

// Returns what a class extends. What it implements only says what its own members are like.
std::vector<ExpressionId> EcmascriptReader::read_heritage(const Node& node) {
    std::vector<ExpressionId> bases;
    for_each_child(node, [&](const Node& clause, TSFieldId) {
        if (clause.type() == "implements_clause") {
            visit_children(clause);
        } else if (clause.type() == "extends_clause") {
            const Node value = clause.child(fields_.value);
            const bool is_name = value.exists() && value.type() == "identifier";
            const ExpressionId base = is_name ? out_.use(token(value, Role::TYPE)) : visit(value);
            const std::vector<ExpressionId> arguments = types_in(clause.child(fields_.type_arguments));
            bases.push_back(arguments.empty() ? base : out_.add(Operation::GENERIC, base, out_.list(arguments)));
        } else if (clause.type() != "comment") {
            bases.push_back(visit(clause));
        }
    });
    return bases;
}

void EcmascriptReader::add_bases(DeclarationId type, const std::vector<ExpressionId>& bases) {
    std::vector<ExpressionId>& all = bases_[type];
    for (const ExpressionId base : bases) {
        if (base != UNKNOWN) {
            all.push_back(base);
        }
    }
    out_.declaration(type).bases = out_.list(all);
}

void EcmascriptReader::read_members(const Node& body, DeclarationId type) {
    if (!body.exists()) {
        return;
    }
    const Saved saved(context_);
    context_.container = type;
    context_.type = type;
    context_.is_exported = false;
    context_.self = self_of(type);
    context_.is_static = false;
    context_.is_class = body.type() == "class_body";
    std::unordered_set<string_view> around = std::exchange(members_, {});
    visit_children(body);
    members_ = std::move(around);
}

ExpressionId EcmascriptReader::interface_declaration(const Node& node) {
    const Node name = node.child(fields_.name);
    if (!name.exists()) {
        return UNKNOWN;
    }
    const DeclarationId type = declare_merged(name, Kind::TYPE);
    const TypeScope scope(*this);
    bind_class_parameters(node);
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "extends_type_clause") {
            add_bases(type, types_in(child));
        }
    });
    read_members(node.child(fields_.body), type);
    return UNKNOWN;
}

// An alias of members that the text lists is a type with those; else it is another name of a type.
ExpressionId EcmascriptReader::type_alias(const Node& node) {
    const Node name = node.child(fields_.name);
    const Node value = node.child(fields_.value);
    if (!name.exists() || !value.exists()) {
        return UNKNOWN;
    }
    const bool is_object = value.type() == "object_type";
    const DeclarationId declared = declare(name, is_object ? Kind::TYPE : Kind::ALIAS);
    if (context_.locals > 0) {
        out_.bind(text(name), out_.add(Operation::DECLARATION, declared));
    }
    const TypeScope scope(*this);
    if (is_object) {
        bind_class_parameters(node);
        read_members(value, declared);
    } else {
        bind_type_parameters(type_parameters(node), true);
        out_.declaration(declared).type = visit(value);
    }
    return UNKNOWN;
}

// The members of an enum see one another.
ExpressionId EcmascriptReader::enum_declaration(const Node& node) {
    const Node name = node.child(fields_.name);
    const Node body = node.child(fields_.body);
    if (!name.exists() || !body.exists()) {
        return UNKNOWN;
    }
    const DeclarationId type = declare_merged(name, Kind::TYPE);
    const bool is_hidden = context_.locals > 0;
    const LocalScope scope(*this, LocalScope::Of::BLOCK);
    context_.container = type;
    const ExpressionId value = out_.instance(out_.add(Operation::DECLARATION, type));
    for_each_child(body, [&](const Node& child, TSFieldId) {
        const bool is_assigned = child.type() == "enum_assignment";
        const Node member = is_assigned ? child.child(fields_.name) : child;
        if (child.type() == "comment" || !member.exists()) {
            return;
        }
        const DeclarationId declared = declare_member(member, Kind::VALUE);
        out_.declaration(declared).is_hidden = is_hidden;
        out_.declaration(declared).is_static = true;
        out_.declaration(declared).type = value;
        out_.bind(name_text(member), out_.add(Operation::DECLARATION, declared));
        visit(is_assigned ? child.child(fields_.value) : Node());
    });
    return UNKNOWN;
}

ExpressionId EcmascriptReader::namespace_declaration(const Node& node) {
    const Node name = node.child(fields_.name);
    const Node body = node.child(fields_.body);
    if (!name.exists() || !body.exists() || context_.locals > 0) {
        return UNKNOWN;
    }
    const Saved saved(context_);
    std::size_t opened = 0;
    open_namespaces(name, opened);
    context_.is_exported = is_ambient_;
    visit_children(body);
    for (; opened > 0; --opened) {
        out_.close();
    }
    return UNKNOWN;
}

// `namespace a.b` is a namespace in a namespace.
void EcmascriptReader::open_namespaces(const Node& name, std::size_t& opened) {
    Node own = name;
    if (name.type() == "nested_identifier") {
        open_namespaces(name.child(fields_.object), opened);
        own = name.child(fields_.property);
        context_.is_exported = true;
    }
    const DeclarationId declared = declare_merged(own, Kind::NAMESPACE);
    context_.container = declared;
    out_.open(declared);
    ++opened;
}

// `declare ...`: in a namespace that is only declared, all is exported.
ExpressionId EcmascriptReader::ambient_declaration(const Node& node) {
    const bool before = is_ambient_;
    is_ambient_ = true;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "statement_block") {
            read_globals(child);
        } else {
            visit(child);
        }
    });
    is_ambient_ = before;
    return UNKNOWN;
}

// `declare global { ... }`: a namespace whose names all files see.
void EcmascriptReader::read_globals(const Node& block) {
    const Saved saved(context_);
    const DeclarationId declared = out_.declare(
        {.name = out_.name(syntax::GLOBAL_NAMESPACE), .kind = Kind::NAMESPACE, .is_private = true, .is_hidden = true});
    context_.container = declared;
    context_.is_exported = true;
    out_.open(declared);
    visit_children(block);
    out_.close();
}

}  // namespace host::sources
