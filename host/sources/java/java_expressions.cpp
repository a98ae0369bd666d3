// Expressions: what they name, and what their values are.
#include "host/sources/java/java_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using syntax::Declaration;
using syntax::DeclarationId;
using syntax::Operation;
using syntax::Role;
using syntax::Space;

}  // namespace

JavaReader::Id JavaReader::read_identifier(const Node& node) {
    return out_.use(token(node));
}

JavaReader::Id JavaReader::read_this(const Node& /*node*/) {
    return out_.add(Operation::SELF, out_.around());
}

JavaReader::Id JavaReader::read_super(const Node& /*node*/) {
    return out_.add(Operation::SUPER, out_.around());
}

JavaReader::Id JavaReader::read_literal(const Node& node) {
    visit_children(node);
    const std::string_view kind = node.type();
    const std::string_view written = text(node);
    if (kind == "string_literal") {
        return out_.instance(foreign("String"));
    }
    if (kind == "true" || kind == "false") {
        return out_.instance(foreign("boolean"));
    }
    if (kind == "character_literal") {
        return out_.instance(foreign("char"));
    }
    if (kind == "null_literal") {
        return out_.instance(foreign("null"));
    }
    const char last = written.empty() ? '0' : written.back();
    if (kind == "decimal_floating_point_literal" || kind == "hex_floating_point_literal") {
        return out_.instance(foreign(last == 'f' || last == 'F' ? "float" : "double"));
    }
    return out_.instance(foreign(last == 'l' || last == 'L' ? "long" : "int"));
}

JavaReader::Id JavaReader::read_class_literal(const Node& node) {
    visit_children(node);
    return out_.instance(foreign("Class"));
}

// What a number becomes by arithmetic is left open.
JavaReader::Id JavaReader::read_binary(const Node& node) {
    constexpr auto COMPARISONS = std::to_array<std::string_view>({"==", "!=", "<", ">", "<=", ">=", "&&", "||"});
    const JavaFields& at = JavaFields::get();
    const Id one = visit(node.child(at.left));
    const Id other = visit(node.child(at.right));
    const std::string_view operation = text(node.child(at.operation));
    const Id string = out_.instance(foreign("String"));
    if (operation == "+" && (one == string || other == string)) {
        return string;
    }
    const bool is_comparison = std::ranges::find(COMPARISONS, operation) != COMPARISONS.end();
    return is_comparison ? out_.instance(foreign("boolean")) : out_.add(Operation::FOREIGN);
}

JavaReader::Id JavaReader::read_unary(const Node& node) {
    const Id value = visit(node.child(JavaFields::get().operand));
    return text(node).starts_with('!') ? out_.instance(foreign("boolean")) : value;
}

JavaReader::Id JavaReader::read_parenthesized(const Node& node) {
    Id value = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) { value = is_java_comment(child) ? value : visit(child); });
    return value;
}

JavaReader::Id JavaReader::read_field_access(const Node& node) {
    return member_in(node, Space::VALUE);
}

JavaReader::Id JavaReader::member_in(const Node& node, Space space) {
    const JavaFields& at = JavaFields::get();
    const Node object = node.child(at.object);
    const Node field = node.child(at.field);
    if (field.exists() && field.type() == "this") {
        return out_.instance(named_type(object, Role::TYPE));
    }
    if (space == Space::QUALIFIER && is_name_of_package(object)) {
        return is_name_of_package(node) ? syntax::UNKNOWN
                                        : type_of_package(std::string(text(object)), field, Role::VALUE);
    }
    bool is_super = false;
    for_each_child(node, [&](const Node& child, TSFieldId name) {
        is_super = is_super || (name == 0 && child.type() == "super");
    });
    return out_.use_member(is_super ? super_of(object) : qualifier(object), token(field, Role::VALUE, space));
}

// What stands before a dot.
JavaReader::Id JavaReader::qualifier(const Node& node) {
    if (node.exists() && node.type() == "identifier") {
        return out_.use(token(node, Role::VALUE, Space::QUALIFIER));
    }
    return node.exists() && node.type() == "field_access" ? member_in(node, Space::QUALIFIER) : visit(node);
}

// `Type.super`: of a class around the reader what its bases have, else what an interface has.
JavaReader::Id JavaReader::super_of(const Node& type) {
    const Id named = named_type(type, Role::TYPE);
    const syntax::NameId name = out_.name(text(type));
    for (DeclarationId around = out_.around(); around != syntax::NO_DECLARATION;
         around = out_.declaration(around).parent) {
        const Declaration& declaration = out_.declaration(around);
        if (declaration.kind == syntax::Kind::TYPE && declaration.name == name) {
            return out_.add(Operation::SUPER, around);
        }
    }
    return out_.instance(named);
}

std::vector<JavaReader::Id> JavaReader::read_arguments(const Node& arguments) {
    std::vector<Id> values;
    if (arguments.exists()) {
        for_each_child(arguments, [&](const Node& child, TSFieldId) {
            if (!is_java_comment(child)) {
                values.push_back(visit(child));
            }
        });
    }
    return values;
}

JavaReader::Id JavaReader::read_call(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const Node object = node.child(at.object);
    bool is_super = false;
    for_each_child(node, [&](const Node& child, TSFieldId name) {
        is_super = is_super || (name == 0 && child.type() == "super");
        if (child.type() == "type_arguments") {
            visit(child);
        }
    });
    const Id of = is_super ? super_of(object) : qualifier(object);
    const std::vector<Id> arguments = read_arguments(node.child(at.arguments));
    const Node name = node.child(at.name);
    const std::string method = method_name(text(name));
    const Id function =
        object.exists() ? out_.add({Operation::MEMBER, of, static_cast<std::uint32_t>(Space::VALUE), out_.name(method)})
                        : out_.look_up(method, Space::VALUE);
    const Id call = out_.add(Operation::CALL, function, out_.list(arguments));
    out_.mention(call, {.name = method,
                        .offset = name.exists() ? name.begin() : node.begin(),
                        .line = name.exists() ? name.line() : node.line(),
                        .role = Role::CALL,
                        .arguments = java_count(arguments.size())});
    return call;
}

// `this(...)` and `super(...)`.
JavaReader::Id JavaReader::read_constructor_call(const Node& node) {
    const JavaFields& at = JavaFields::get();
    visit(node.child(at.object));
    const std::vector<Id> arguments = read_arguments(node.child(at.arguments));
    const Node word = node.child(at.constructor);
    const bool is_own = word.exists() && word.type() == "this";
    const std::string& name = is_own ? construction_.own : construction_.base;
    const Id type = is_own ? out_.add(Operation::SELF_TYPE, out_.around()) : construction_.base_type;
    if (type != syntax::UNKNOWN) {
        const Id constructor =
            out_.add({Operation::MEMBER, type, static_cast<std::uint32_t>(Space::VALUE), out_.name(name)});
        out_.mention(out_.add(Operation::CALL, constructor, out_.list(arguments)),
                     {.name = name,
                      .offset = word.exists() ? word.begin() : node.begin(),
                      .line = node.line(),
                      .role = Role::CALL,
                      .arguments = java_count(arguments.size())});
    }
    return syntax::UNKNOWN;
}

// `new Type(...)`, `outer.new Inner(...)`, `new Type(...) { ... }`.
JavaReader::Id JavaReader::read_creation(const Node& node) {
    const JavaFields& at = JavaFields::get();
    Id outer = syntax::UNKNOWN;
    Node body;
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (child.type() == "class_body") {
            body = child;
        } else if (field == 0 && !is_java_comment(child)) {
            outer = visit(child);
        }
    });
    const std::uint8_t arguments = java_count(read_arguments(node.child(at.arguments)).size());
    const Node type = node.child(at.type);
    Id created = syntax::UNKNOWN;
    if (outer != syntax::UNKNOWN && type.type() == "type_identifier") {
        syntax::Token name = token(type, Role::CALL, Space::TYPE);
        name.arguments = arguments;
        created = out_.use_member(outer, name);
    } else {
        created = type.exists() && type.type() != "generic_type" ? named_type(type, Role::CALL) : visit(type);
    }
    if (body.exists()) {
        read_anonymous_class(body, created);
    }
    return out_.instance(created);
}

JavaReader::Id JavaReader::read_array_creation(const Node& node) {
    const JavaFields& at = JavaFields::get();
    Id type = visit(node.child(at.type));
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (child.type() == "dimensions") {
            type = lists_of(type, child);
        } else if (child.type() == "dimensions_expr") {
            visit(child);
            type = array_of(type);
        } else if (field != at.type) {
            visit(child);
        }
    });
    return out_.instance(type);
}

JavaReader::Id JavaReader::read_array_access(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const Id array = visit(node.child(at.array));
    visit(node.child(at.index));
    return array == syntax::UNKNOWN ? syntax::UNKNOWN : out_.add(Operation::ELEMENT, array);
}

// Of an intersection of types the first counts.
JavaReader::Id JavaReader::read_cast(const Node& node) {
    const JavaFields& at = JavaFields::get();
    Id type = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        const Id read = visit(child);
        type = field == at.type && type == syntax::UNKNOWN ? read : type;
    });
    return out_.instance(type);
}

// A pattern binds a local from there on, wherever the test holds.
JavaReader::Id JavaReader::read_instanceof(const Node& node) {
    const JavaFields& at = JavaFields::get();
    visit(node.child(at.left));
    const Id type = visit(node.child(at.right));
    if (const Node name = node.child(at.name); name.exists()) {
        out_.bind(text(name), out_.instance(type));
    }
    visit(node.child(at.pattern));
    return out_.instance(foreign("boolean"));
}

JavaReader::Id JavaReader::read_conditional(const Node& node) {
    const JavaFields& at = JavaFields::get();
    visit(node.child(at.condition));
    const Id one = visit(node.child(at.consequence));
    const Id other = visit(node.child(at.alternative));
    const bool is_known = one != syntax::UNKNOWN && other != syntax::UNKNOWN;
    return is_known ? out_.one_of(std::array{one, other}) : syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_assignment(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const Id target = visit(node.child(at.left));
    visit(node.child(at.right));
    return target;
}

JavaReader::Id JavaReader::read_lambda(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const Node parameters = node.child(at.parameters);
    out_.open_local();
    if (parameters.exists() && parameters.type() == "formal_parameters") {
        bool has_more = false;
        bind_parameters(parameters, has_more);
    } else if (parameters.exists() && parameters.type() == "inferred_parameters") {
        for_each_child(parameters, [&](const Node& child, TSFieldId) { out_.bind(text(child), syntax::UNKNOWN); });
    } else {
        out_.bind(text(parameters), syntax::UNKNOWN);
    }
    visit(node.child(at.body));
    out_.close();
    return syntax::UNKNOWN;
}

// `Type::new`, `value::method`, `Type::method`.
JavaReader::Id JavaReader::read_method_reference(const Node& node) {
    Node first;
    Node name;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "type_arguments") {
            visit(child);
        } else if (!is_java_comment(child)) {
            (first.exists() ? name : first) = child;
        }
    });
    if (!name.exists()) {
        if (first.exists() && (first.type() == "identifier" || first.type() == "type_identifier")) {
            named_type(first, Role::CALL);
        } else {
            qualifier(first);
        }
        return syntax::UNKNOWN;
    }
    const std::string method = method_name(text(name));
    out_.use_member(qualifier(first), {.name = method, .offset = name.begin(), .line = name.line()});
    return syntax::UNKNOWN;
}

}  // namespace host::sources
