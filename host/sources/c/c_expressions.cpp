// Expressions: what the names in them are looked up in, and what they give.
#include "host/sources/c/c_reader.h"

#include <array>

namespace host::sources {

using syntax::Declaration;
using syntax::Operation;
using syntax::Role;
using syntax::Space;
using syntax::UNKNOWN;

namespace {

// Methods of the library's containers and pointers by what they give; a class of the repository has its own.
constexpr auto CPP_GIVE_ELEMENTS = std::to_array<std::string_view>({"at", "back", "front", "top", "value"});
constexpr auto CPP_GIVE_POINTERS =
    std::to_array<std::string_view>({"begin", "cbegin", "data", "end", "find", "get", "rbegin", "release"});
constexpr auto CPP_CASTS =
    std::to_array<std::string_view>({"const_cast", "dynamic_cast", "reinterpret_cast", "static_cast"});

}  // namespace

CReader::Id CReader::read_identifier(const Node& node) {
    return out_.use(token(node));
}

CReader::Id CReader::read_literal(const Node& /*node*/) {
    return foreign();
}

CReader::Id CReader::read_this(const Node& /*node*/) {
    const bool is_known = local_classes_ == 0 && out_.around() != syntax::NO_DECLARATION;
    return is_known ? pointer_to(out_.add(Operation::SELF, out_.around())) : UNKNOWN;
}

CReader::Id CReader::read_field(const Node& node) {
    return member(owner_of_field(node), node.child(fields_.field_name), Role::VALUE, Declaration::ANY_NUMBER);
}

// What stands before the `.`, or is led to by what stands before the `->`.
CReader::Id CReader::owner_of_field(const Node& node) {
    const Id before = visit(node.child(fields_.argument));
    const bool is_pointer = text(node.child(fields_.operator_name)) == "->";
    return is_pointer && before != UNKNOWN ? out_.add(Operation::TARGET, before) : before;
}

// `name` of a value: a plain one, one with template arguments, or one that says of which base it is.
CReader::Id CReader::member(Id of, const Node& name, Role role, std::uint8_t arguments) {
    if (!name.exists()) {
        return UNKNOWN;
    }
    const std::string_view kind = name.type();
    if (kind == "dependent_name") {
        return member(of, first_child(name), role, arguments);
    }
    if (kind == "template_method") {
        template_arguments(name.child(fields_.arguments));
        return member(of, name.child(fields_.name), role, arguments);
    }
    if (kind == "qualified_identifier") {
        return qualified(name, role, Space::VALUE, arguments);
    }
    if (kind == "destructor_name") {
        return UNKNOWN;
    }
    syntax::Token token = this->token(name, role);
    token.arguments = arguments;
    return out_.use_member(of, token);
}

// Reads the arguments of a call. Returns how many they are; any number where a part of them is not understood.
std::uint8_t CReader::read_arguments(const Node& list) {
    std::size_t count = 0;
    bool is_known = list.exists();
    for_each_child(list, [&](const Node& argument, TSFieldId) {
        const std::string_view kind = argument.type();
        is_known = is_known && kind != "ERROR" && kind != "parameter_pack_expansion";
        count += kind == "comment" ? 0 : 1;
        visit(argument);
    });
    return is_known && count < Declaration::ANY_NUMBER ? static_cast<std::uint8_t>(count) : Declaration::ANY_NUMBER;
}

CReader::Id CReader::read_call(const Node& node) {
    const Node function = node.child(fields_.function);
    const Node arguments = node.child(fields_.arguments);
    if (!function.exists()) {
        return UNKNOWN;
    }
    const std::string_view kind = function.type();
    if (kind == "template_function" && is_among(CPP_CASTS, text(function.child(fields_.name)))) {
        const std::vector<Id> types = template_arguments(function.child(fields_.arguments));
        read_arguments(arguments);
        return types.empty() ? UNKNOWN : out_.instance(types.front());
    }
    if (text(function) == "std::move") {
        return visit(arguments.named_child(0));
    }
    const std::uint8_t count = read_arguments(arguments);
    if (kind == "field_expression") {
        const Id of = owner_of_field(function);
        const Id called = member(of, function.child(fields_.field_name), Role::CALL, count);
        return called == UNKNOWN ? UNKNOWN : result_of_method(of, text(function.child(fields_.field_name)), called);
    }
    const Id called = kind == "primitive_type" ? foreign() : named(function, Role::CALL, Space::VALUE, count);
    return called == UNKNOWN ? UNKNOWN : out_.add(Operation::CALL, called);
}

// What a method gives, which may be one of the library's.
CReader::Id CReader::result_of_method(Id of, std::string_view name, Id called) {
    const Id result = out_.add(Operation::CALL, called);
    const bool gives_element = is_among(CPP_GIVE_ELEMENTS, name);
    if (!dialect_.is_cpp || (!gives_element && !is_among(CPP_GIVE_POINTERS, name))) {
        return result;
    }
    const Id element = out_.add(Operation::ELEMENT, of);
    return out_.one_of(std::array{result, gives_element ? element : pointer_to(element)});
}

CReader::Id CReader::read_assignment(const Node& node) {
    const Id assigned = visit(node.child(fields_.left));
    read_initializer(node.child(fields_.right), assigned);
    return assigned;
}

CReader::Id CReader::read_cast(const Node& node) {
    const Id type = visit(node.child(fields_.type));
    visit(node.child(fields_.value));
    return out_.instance(type);
}

// `*p` or `&v`.
CReader::Id CReader::read_pointer_operation(const Node& node) {
    const Id operand = visit(node.child(fields_.argument));
    if (operand == UNKNOWN) {
        return UNKNOWN;
    }
    return text(node.child(fields_.operator_name)) == "*" ? out_.add(Operation::TARGET, operand) : pointer_to(operand);
}

CReader::Id CReader::read_element(const Node& node) {
    const Id container = visit(node.child(fields_.argument));
    visit(node.child(dialect_.is_cpp ? fields_.indices : fields_.index));
    return container == UNKNOWN ? UNKNOWN : out_.add(Operation::ELEMENT, container);
}

// Of what stands in parentheses, and of a comma, the value of the last.
CReader::Id CReader::read_inner(const Node& node) {
    Id last = UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() != "comment") {
            last = visit(child);
        }
    });
    return last;
}

CReader::Id CReader::read_conditional(const Node& node) {
    visit(node.child(fields_.condition));
    const Id one = visit(node.child(fields_.consequence));
    const Id other = visit(node.child(fields_.alternative));
    return one == other ? one : one == UNKNOWN || other == UNKNOWN ? UNKNOWN : out_.one_of(std::array{one, other});
}

// In C, a pointer and a number give a pointer. What an operator gives in C++, it may define itself.
CReader::Id CReader::read_binary(const Node& node) {
    const Id left = visit(node.child(fields_.left));
    visit(node.child(fields_.right));
    const std::string_view operation = text(node.child(fields_.operator_name));
    return !dialect_.is_cpp && (operation == "+" || operation == "-") ? left : UNKNOWN;
}

CReader::Id CReader::read_compound_literal(const Node& node) {
    const Id value = out_.instance(type_of(node.child(fields_.type)));
    read_initializer(node.child(fields_.value), value);
    return value;
}

CReader::Id CReader::read_initializer_list(const Node& node) {
    read_elements(node, UNKNOWN);
    return UNKNOWN;
}

// The values between braces: `.name = value` is a member of what is initialized, and `[number] = value` an element.
void CReader::read_elements(const Node& list, Id initialized) {
    const auto element_of = [&](Id of) { return of == UNKNOWN ? UNKNOWN : out_.add(Operation::ELEMENT, of); };
    for_each_child(list, [&](const Node& each, TSFieldId) {
        if (each.type() != "initializer_pair") {
            read_initializer(each, element_of(initialized));
            return;
        }
        Id value = initialized;
        for_each_child(each, [&](const Node& part, TSFieldId field) {
            if (field != fields_.designator) {
                return;
            }
            if (part.type() == "field_designator") {
                value = member(value, first_child(part), Role::KEY, Declaration::ANY_NUMBER);
            } else if (part.type() == "field_identifier") {
                value = member(value, part, Role::KEY, Declaration::ANY_NUMBER);
            } else {
                visit_children(part);
                value = element_of(value);
            }
        });
        read_initializer(each.child(fields_.value), value);
    });
}

CReader::Id CReader::read_offset(const Node& node) {
    const Id value = out_.instance(visit(node.child(fields_.type)));
    member(value, node.child(fields_.member), Role::VALUE, Declaration::ANY_NUMBER);
    return foreign();
}

CReader::Id CReader::read_new(const Node& node) {
    const Id type = type_of(node.child(fields_.type));
    visit(node.child(fields_.placement));
    visit(node.child(fields_.declarator));
    visit(node.child(fields_.arguments));
    return type == UNKNOWN ? UNKNOWN : pointer_to(type);
}

CReader::Id CReader::read_lambda(const Node& node) {
    out_.open_local();
    for_each_child(node.child(fields_.captures), [&](const Node& capture, TSFieldId) {
        if (capture.type() == "lambda_capture_initializer") {
            const Id value = visit(capture.child(fields_.right));
            out_.bind(text(capture.child(fields_.left)), value);
        }
    });
    bind_template_parameters(node.child(fields_.template_parameters), false);
    const Node function = node.child(fields_.declarator);
    visit(function.child(fields_.parameters));
    read_trailing_type(function, UNKNOWN);
    visit(node.child(fields_.body));
    out_.close();
    return UNKNOWN;
}

}  // namespace host::sources
