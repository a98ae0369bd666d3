// Expressions: what they name, and what their values are.
#include "host/sources/rust/rust_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using syntax::Operation;
using syntax::Role;
using syntax::Space;

}  // namespace

RustReader::Id RustReader::read_identifier(const Node& node) {
    return path(node, Role::VALUE, Space::VALUE);
}

RustReader::Id RustReader::read_self(const Node& /*node*/) {
    return out_.instance(surroundings_.self_type);
}

RustReader::Id RustReader::read_literal(const Node& /*node*/) {
    return out_.add(Operation::FOREIGN);
}

// The value of what a node holds besides comments.
RustReader::Id RustReader::read_inner(const Node& node) {
    Id value = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) { value = is_rust_comment(child) ? value : visit(child); });
    return value;
}

RustReader::Id RustReader::read_field(const Node& node) {
    const RustFields& at = RustFields::get();
    const Id value = visit(node.child(at.value));
    const Node field = node.child(at.field);
    if (field.exists() && field.type() == "integer_literal") {
        const std::string_view number = text(field);
        return number.size() == 1 ? component(value, static_cast<std::uint32_t>(number.front() - '0'))
                                  : syntax::UNKNOWN;
    }
    return use_field(value, field, Role::VALUE);
}

RustReader::Id RustReader::use_field(Id value, const Node& name, Role role) {
    const std::string field = rust_field_name(name_text(name));
    syntax::Token token = this->token(name, role);
    token.name = field;
    return out_.use_member(value, token);
}

// A field with a number, of a tuple or a struct.
RustReader::Id RustReader::component(Id value, std::uint32_t number) {
    if (value == syntax::UNKNOWN) {
        return value;
    }
    const Id of_struct = out_.add({Operation::MEMBER, value, static_cast<std::uint32_t>(Space::VALUE),
                                   out_.name(rust_field_name(std::to_string(number)))});
    return out_.one_of(std::array{out_.add(Operation::COMPONENT, value, number), of_struct});
}

RustReader::Id RustReader::read_call(const Node& node) {
    const RustFields& at = RustFields::get();
    const Node function = node.child(at.function);
    if (text(node).substr(function.end() - node.begin()).starts_with('!')) {
        read_macro_arguments(node.child(at.arguments));
        return syntax::UNKNOWN;
    }
    const Id called = callee(function);
    Id argument = syntax::UNKNOWN;
    for_each_child(node.child(at.arguments), [&](const Node& child, TSFieldId) {
        const Id value = visit(child);
        argument = argument == syntax::UNKNOWN ? value : argument;
    });
    const Id made = constructed(function, argument);
    if (made != syntax::UNKNOWN) {
        return made;
    }
    return called == syntax::UNKNOWN ? syntax::UNKNOWN : out_.add(Operation::CALL, called);
}

// `name = value` gives a name to what is formatted.
void RustReader::read_macro_arguments(const Node& arguments) {
    for_each_child(arguments, [&](const Node& child, TSFieldId) {
        visit(child.type() == "assignment_expression" ? child.child(RustFields::get().right) : child);
    });
}

RustReader::Id RustReader::callee(const Node& function) {
    const RustFields& at = RustFields::get();
    if (!function.exists()) {
        return syntax::UNKNOWN;
    }
    if (function.type() == "field_expression") {
        const Id value = visit(function.child(at.value));
        const Node field = function.child(at.field);
        return field.type() == "integer_literal" ? syntax::UNKNOWN
                                                 : out_.use_member(value, name_token(field, Role::CALL, Space::VALUE));
    }
    if (function.type() == "generic_function") {
        visit(function.child(at.type_arguments));
        return callee(function.child(at.function));
    }
    return function.type() == "identifier" || function.type() == "scoped_identifier"
               ? path(function, Role::CALL, Space::VALUE)
               : visit(function);
}

// What a function of Rust's library makes of its argument.
RustReader::Id RustReader::constructed(const Node& function, Id argument) {
    if (argument == syntax::UNKNOWN) {
        return syntax::UNKNOWN;
    }
    constexpr auto POINTERS =
        std::to_array<std::string_view>({"Box", "Rc", "Arc", "Cell", "RefCell", "Mutex", "RwLock"});
    const std::string_view name = text(function);
    if (name == "Some" || name == "Ok") {
        return out_.instance(out_.add(Operation::AWAITABLE, argument));
    }
    const bool is_pointer =
        name.ends_with("::new") && std::ranges::find(POINTERS, name.substr(0, name.size() - 5)) != POINTERS.end();
    return is_pointer ? out_.instance(out_.add(Operation::POINTER, argument)) : syntax::UNKNOWN;
}

RustReader::Id RustReader::read_generic_function(const Node& node) {
    return callee(node);
}

// `x?` and `x.await`.
RustReader::Id RustReader::read_unwrapping(const Node& node) {
    const Id value = read_inner(node);
    return value == syntax::UNKNOWN ? value : out_.add(Operation::AWAITED, value);
}

RustReader::Id RustReader::read_unary(const Node& node) {
    const Id value = read_inner(node);
    return value == syntax::UNKNOWN || !text(node).starts_with("*") ? syntax::UNKNOWN
                                                                    : out_.add(Operation::TARGET, value);
}

// An element, or with a range the same again.
RustReader::Id RustReader::read_index(const Node& node) {
    Id whole = syntax::UNKNOWN;
    bool is_first = true;
    bool is_range = false;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!is_rust_comment(child)) {
            const Id value = visit(child);
            whole = is_first ? value : whole;
            is_range = !is_first && child.type() == "range_expression";
            is_first = false;
        }
    });
    return is_range || whole == syntax::UNKNOWN ? whole : out_.add(Operation::ELEMENT, whole);
}

RustReader::Id RustReader::read_tuple(const Node& node) {
    return out_.instance(read_tuple_type(node));
}

RustReader::Id RustReader::read_array(const Node& node) {
    Id element = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        const Id value = visit(child);
        element = element == syntax::UNKNOWN ? value : element;
    });
    return out_.instance(out_.add(Operation::LIST, element));
}

RustReader::Id RustReader::read_cast(const Node& node) {
    const RustFields& at = RustFields::get();
    visit(node.child(at.value));
    return out_.instance(visit(node.child(at.type)));
}

RustReader::Id RustReader::read_struct_literal(const Node& node) {
    const RustFields& at = RustFields::get();
    const Node name = node.child(at.name);
    const bool is_generic = name.exists() && name.type() == "generic_type_with_turbofish";
    const Id value = out_.instance(is_generic ? visit(name) : path(name, Role::CALL, Space::TYPE));
    for_each_child(node.child(at.body), [&](const Node& child, TSFieldId) {
        if (child.type() == "field_initializer") {
            const Node field = child.child(at.field);
            if (field.type() != "integer_literal") {
                use_field(value, field, Role::KEY);
            }
            visit(child.child(at.value));
        } else if (child.type() == "shorthand_field_initializer") {
            for_each_child(child, [&](const Node& field, TSFieldId) {
                if (field.type() == "identifier") {
                    use_field(value, field, Role::KEY);
                }
            });
        } else {
            visit(child);
        }
    });
    return value;
}

// What the macro makes of its tokens is not known.
RustReader::Id RustReader::read_macro_call(const Node& node) {
    path(node.child(RustFields::get().macro), Role::CALL, Space::VALUE);
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_closure(const Node& node) {
    const RustFields& at = RustFields::get();
    out_.open_local();
    bind_parameters(node.child(at.parameters));
    visit(node.child(at.return_type));
    visit(node.child(at.body));
    out_.close();
    return syntax::UNKNOWN;
}

}  // namespace host::sources
