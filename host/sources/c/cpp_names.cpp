// What C++ adds to names: namespaces, qualified names, templates.
#include "host/sources/c/c_reader.h"

#include <array>
#include <string>
#include <utility>

namespace host::sources {

using syntax::Declaration;
using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::Space;
using syntax::UNKNOWN;

namespace {

constexpr std::string_view CPP_LIBRARY = "std";

constexpr auto CPP_POINTERS = std::to_array<std::string_view>({"optional", "shared_ptr", "unique_ptr"});
constexpr auto CPP_LISTS =
    std::to_array<std::string_view>({"array", "deque", "initializer_list", "list", "multiset", "priority_queue",
                                     "queue", "set", "span", "stack", "unordered_set", "vector"});
constexpr auto CPP_MAPS = std::to_array<std::string_view>({"map", "multimap", "unordered_map", "unordered_multimap"});
constexpr auto CPP_TUPLES = std::to_array<std::string_view>({"pair", "tuple"});
constexpr auto CPP_MAKERS = std::to_array<std::string_view>({"make_shared", "make_unique"});

}  // namespace

// What stands in an anonymous namespace, or in an inline one, is a member of what is around it.
CReader::Id CReader::read_namespace(const Node& node) {
    const Node name = node.child(fields_.name);
    const Place before = place_;
    std::size_t opened = 0;
    const auto open = [&](const Node& each) {
        place_.parent = out_.declare({.name = out_.name(text(each)),
                                      .kind = Kind::NAMESPACE,
                                      .parent = place_.parent,
                                      .offset = each.begin(),
                                      .is_hidden = true});
        out_.open(place_.parent);
        ++opened;
    };
    if (!name.exists()) {
        place_.is_anonymous = true;
    } else if (name.type() == "nested_namespace_specifier") {
        for_each_child(name, [&](const Node& each, TSFieldId) { open(each); });
    } else if (!has_token(node, "inline")) {
        open(name);
    }
    visit(node.child(fields_.body));
    for (; opened > 0; --opened) {
        out_.close();
    }
    place_ = before;
    return UNKNOWN;
}

CReader::Id CReader::read_namespace_alias(const Node& node) {
    const Node name = node.child(fields_.name);
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field != fields_.name) {
            import_name(text(name), text(child), "");
        }
    });
    return UNKNOWN;
}

// `using a::b;` has b mean a::b here, `using namespace a;` all names of a.
CReader::Id CReader::read_using(const Node& node) {
    const Node named = first_child(node);
    if (!named.exists()) {
        return UNKNOWN;
    }
    const std::string_view whole = text(named);
    if (has_token(node, "namespace")) {
        out_.import({.module = out_.name(whole), .around = place_.parent, .is_star = true});
        return UNKNOWN;
    }
    const std::size_t end = whole.rfind("::");
    qualified(named, Role::IMPORT, Space::VALUE, Declaration::ANY_NUMBER);
    if (end != std::string_view::npos && !place_.is_class) {
        import_name(whole.substr(end + 2), whole.substr(0, end), whole.substr(end + 2));
    }
    return UNKNOWN;
}

void CReader::import_name(std::string_view name, std::string_view module, std::string_view original) {
    const std::uint32_t id = out_.import({.name = out_.name(name),
                                          .module = out_.name(module),
                                          .original = out_.name(original),
                                          .around = place_.parent,
                                          .is_in_function = place_.is_local});
    if (place_.is_local) {
        out_.bind(name, out_.add(Operation::IMPORT, id));
    }
}

CReader::Id CReader::read_alias(const Node& node) {
    const Id type = visit(node.child(fields_.type));
    declare_alias(node.child(fields_.name), type, false);
    return UNKNOWN;
}

// The parameters of a class, and of its members where they stand outside of it, are replaced by the arguments of a
// type; of those of a function nothing is known.
CReader::Id CReader::read_template(const Node& node) {
    bool is_of_class = false;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        const std::string_view kind = child.type();
        const Node declared = child.child(fields_.declarator);
        is_of_class = is_of_class || kind == "class_specifier" || kind == "struct_specifier" ||
                      kind == "union_specifier" || kind == "template_declaration" ||
                      (declared.exists() && names_a_member(declared));
    });
    const bool was_in_template = std::exchange(is_in_template_, true);
    out_.open_local();
    bind_template_parameters(node.child(fields_.parameters), is_of_class && !was_in_template);
    const Node parameters = node.child(fields_.parameters);
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child != parameters) {
            is_in_template_ = child.type() == "template_declaration";
            visit(child);
        }
    });
    out_.close();
    is_in_template_ = was_in_template;
    return UNKNOWN;
}

bool CReader::names_a_member(const Node& declarator) const {
    Node part = declarator;
    while (part.exists() && part.type() != "qualified_identifier") {
        const Node inner = part.child(fields_.declarator);
        part = inner.exists() || part.type() != "reference_declarator" ? inner : first_child(part);
    }
    return part.exists();
}

void CReader::bind_template_parameters(const Node& parameters, bool is_of_class) {
    std::uint32_t number = 0;
    for_each_child(parameters, [&](const Node& each, TSFieldId) {
        const std::string_view kind = each.type();
        if (kind == "comment") {
            return;
        }
        const Node named = each.child(fields_.name);
        const bool is_type = kind == "type_parameter_declaration" || kind == "optional_type_parameter_declaration";
        visit(each.child(fields_.default_type));
        if (is_type) {
            const Node name = named.exists() ? named : first_child(each);
            out_.bind(text(name), is_of_class ? out_.add(Operation::PARAMETER, UNKNOWN, number) : UNKNOWN);
        } else if (each.child(fields_.declarator).exists()) {
            read_parameter(each);
        } else {
            out_.bind(text(first_child(each)), UNKNOWN);
        }
        ++number;
    });
}

// A friend is declared outside of the class.
CReader::Id CReader::read_friend(const Node& node) {
    const Place before = place_;
    if (place_.is_class) {
        place_ = {.parent = place_.outside, .is_anonymous = place_.is_anonymous, .is_friend = true};
    }
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "type_identifier" && !place_.is_local) {  // `friend class C;` is the first of C
            announce(child);
        }
        visit(child);
    });
    place_ = before;
    return UNKNOWN;
}

// Names.

CReader::Id CReader::read_qualified(const Node& node) {
    const Node name = last_name(node);
    const bool is_type = name.exists() && (name.type() == "type_identifier" || name.type() == "template_type" ||
                                           name.type() == "dependent_type");
    return qualified(node, is_type ? Role::TYPE : Role::VALUE, is_type ? Space::TYPE : Space::VALUE,
                     Declaration::ANY_NUMBER);
}

CReader::Id CReader::read_template_type(const Node& node) {
    return named(node, Role::TYPE, Space::TYPE, Declaration::ANY_NUMBER);
}

CReader::Id CReader::read_template_function(const Node& node) {
    return named(node, Role::VALUE, Space::VALUE, Declaration::ANY_NUMBER);
}

Node CReader::last_name(Node node) const {
    while (node.exists() && node.type() == "qualified_identifier") {
        node = node.child(fields_.name);
    }
    return node;
}

// A name of any form in the given use.
CReader::Id CReader::named(const Node& node, Role role, Space space, std::uint8_t arguments) {
    if (!node.exists()) {
        return UNKNOWN;
    }
    return node.type() == "qualified_identifier" ? qualified(node, role, space, arguments)
                                                 : step({}, node, role, space, arguments);
}

CReader::Id CReader::qualified(const Node& node, Role role, Space space, std::uint8_t arguments) {
    const QualifiedName name = qualified_name(node);
    return step(name, name.name, role, space, arguments);
}

// Reads what stands before the last name.
CReader::QualifiedName CReader::qualified_name(const Node& node) {
    QualifiedName found{.owner = UNKNOWN, .name = node, .last_qualifier = {}};
    while (found.name.exists() && found.name.type() == "qualified_identifier") {
        const Node scope = found.name.child(fields_.scope);
        if (scope.exists()) {
            const bool is_library = !found.is_qualified && text(scope) == CPP_LIBRARY;
            found.owner =
                is_library ? foreign() : step(found, scope, Role::TYPE, Space::QUALIFIER, Declaration::ANY_NUMBER);
            found.is_of_library = is_library;
            const Node plain = scope.child(fields_.name);
            found.last_qualifier = text(plain.exists() ? plain : scope);
        }
        found.is_global = found.is_global || !scope.exists();
        found.is_qualified = found.is_qualified || scope.exists();
        found.name = found.name.child(fields_.name);
    }
    return found;
}

// One name behind a qualifier, if any, with its template arguments.
CReader::Id CReader::step(const QualifiedName& before, const Node& node, Role role, Space space,
                          std::uint8_t arguments) {
    if (!node.exists()) {
        return UNKNOWN;
    }
    const std::string_view kind = node.type();
    if (kind == "dependent_name" || kind == "dependent_type") {
        return step(before, first_child(node), role, space, arguments);
    }
    if (kind == "template_type" || kind == "template_function" || kind == "template_method") {
        const Id name = step(before, node.child(fields_.name), role, space, arguments);
        const std::vector<Id> given = template_arguments(node.child(fields_.arguments));
        if (before.is_of_library) {
            return library_name(text(node.child(fields_.name)), given);
        }
        return kind == "template_type" && name != UNKNOWN ? out_.add(Operation::GENERIC, name, out_.list(given)) : name;
    }
    if (!kind.ends_with("identifier") && kind != "operator_name") {
        return visit(node);
    }
    syntax::Token token = this->token(node, role, space);
    token.arguments = arguments;
    if (before.is_qualified) {
        return out_.use_member(before.owner, token);
    }
    if (!before.is_global) {
        return out_.use(token);
    }
    const Id global = out_.add({Operation::GLOBAL, 0, static_cast<std::uint32_t>(space), out_.name(token.name)});
    out_.mention(global, token);
    return global;
}

std::vector<CReader::Id> CReader::template_arguments(const Node& arguments) {
    std::vector<Id> types;
    for_each_child(arguments, [&](const Node& each, TSFieldId) { types.push_back(visit(each)); });
    return types;
}

// What a template of the library is made of, as far as elements and targets go.
CReader::Id CReader::library_name(std::string_view name, const std::vector<Id>& arguments) {
    if (arguments.empty()) {
        return foreign();
    }
    const Id first = arguments.front();
    if (is_among(CPP_POINTERS, name)) {
        return out_.add(Operation::POINTER, first);
    }
    if (is_among(CPP_MAKERS, name)) {
        return out_.instance(out_.add(Operation::FUNCTION, out_.add(Operation::POINTER, first)));
    }
    if (is_among(CPP_LISTS, name)) {
        return out_.add(Operation::LIST, first);
    }
    if (is_among(CPP_MAPS, name) && arguments.size() > 1) {
        return out_.add(Operation::MAP, first, arguments.at(1));
    }
    if (is_among(CPP_TUPLES, name)) {
        return out_.add(Operation::TUPLE, out_.list(arguments));
    }
    return name == "function" ? first : foreign();
}

// `: member(value), Base(value)`. A parameter of the same name does not hide the member.
CReader::Id CReader::read_field_initializer(const Node& node) {
    bool is_first = true;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (std::exchange(is_first, false)) {
            const bool is_hidden = child.type() == "field_identifier" && out_.is_local(text(child));
            if (is_hidden) {
                out_.use_member(out_.add(Operation::SELF, out_.around()), token(child));
            } else {
                named(child, Role::CALL, Space::VALUE, Declaration::ANY_NUMBER);
            }
        } else {
            visit(child);
        }
    });
    return UNKNOWN;
}

// What a concept demands is not followed.
CReader::Id CReader::read_concept(const Node& node) {
    const Node name = node.child(fields_.name);
    out_.declare({.name = out_.name(text(name)), .kind = Kind::TYPE, .parent = place_.parent, .offset = name.begin()});
    return UNKNOWN;
}

}  // namespace host::sources
