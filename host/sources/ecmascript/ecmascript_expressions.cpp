// Expressions: names, members, literals, operators.
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using syntax::ExpressionId;
using syntax::Operation;
using syntax::Role;
using syntax::Space;
using syntax::UNKNOWN;

constexpr std::size_t MOST_ELEMENTS = 8;  // of which the type of an array is told

bool begins_in_upper_case(std::string_view name) {
    return !name.empty() && 'A' <= name.front() && name.front() <= 'Z';
}

}  // namespace

ExpressionId EcmascriptReader::identifier(const Node& node) {
    return text(node) == "undefined" ? literal(node) : out_.use(token(node));
}

// NOLINTNEXTLINE(readability-make-member-function-const): a rule
ExpressionId EcmascriptReader::this_value(const Node& /*node*/) {
    return context_.self;
}

ExpressionId EcmascriptReader::super_value(const Node& /*node*/) {
    const bool is_instance =
        context_.type != syntax::NO_DECLARATION && context_.self == out_.add(Operation::SELF, context_.type);
    return is_instance ? out_.add(Operation::SUPER, context_.type) : UNKNOWN;
}

ExpressionId EcmascriptReader::literal(const Node& /*node*/) {
    return out_.add(Operation::FOREIGN);
}

// The name that a node states: without the quotes of a string.
std::string_view EcmascriptReader::name_text(const Node& node) const {
    return node.exists() && node.type() == "string" ? string_value(node) : text(node);
}

ExpressionId EcmascriptReader::property(ExpressionId of, const Node& name, Role role, std::uint8_t arguments) {
    syntax::Token token = this->token(name, role);
    token.arguments = arguments;
    return out_.use_member(of, token);
}

ExpressionId EcmascriptReader::member(const Node& node) {
    if (const std::optional<ExpressionId> exported = own_export(node, Role::VALUE, syntax::Declaration::ANY_NUMBER)) {
        return *exported;
    }
    const ExpressionId object = visit(node.child(fields_.object));
    const Node name = node.child(fields_.property);
    if (!has_types() && text(name) == "prototype") {  // is what the instances of a type have in common
        return out_.instance(object);
    }
    return property(object, name, Role::VALUE, syntax::Declaration::ANY_NUMBER);
}

ExpressionId EcmascriptReader::subscript(const Node& node) {
    const ExpressionId object = visit(node.child(fields_.object));
    const Node index = node.child(fields_.index);
    visit(index);
    if (index.exists() && index.type() == "string") {
        return out_.add(
            {Operation::MEMBER, object, static_cast<std::uint32_t>(Space::VALUE), out_.name(string_value(index))});
    }
    return out_.add(Operation::ELEMENT, object);
}

// Of what only stands around another node.
ExpressionId EcmascriptReader::inner(const Node& node) {
    ExpressionId value = UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) { value = visit(child); });
    return value;
}

// `x as T`: what is cast to `const` stays as it is.
ExpressionId EcmascriptReader::cast(const Node& node) {
    const Node value = node.named_child(0);
    const Node type = node.named_child(1);
    if (!type.exists()) {
        return visit(value);
    }
    const ExpressionId stated = out_.instance(visit(type));
    visit_expecting(value, stated);
    return stated;
}

ExpressionId EcmascriptReader::satisfies(const Node& node) {
    const ExpressionId expected = out_.instance(visit(node.named_child(1)));
    return visit_expecting(node.named_child(0), expected);
}

ExpressionId EcmascriptReader::assertion(const Node& node) {
    const std::vector<ExpressionId> types = types_in(node.named_child(0));
    const ExpressionId stated = types.size() == 1 ? out_.instance(types.front()) : UNKNOWN;
    visit_expecting(node.named_child(1), stated);
    return stated;
}

ExpressionId EcmascriptReader::instantiation(const Node& node) {
    const ExpressionId value = visit(node.child(fields_.function));
    visit(node.child(fields_.type_arguments));
    return value;
}

ExpressionId EcmascriptReader::awaited(const Node& node) {
    const Node operand = node.named_child(0);
    const ExpressionId value = visit(operand);
    const bool is_import = operand.exists() && operand.type() == "call_expression" && !module_of_call(operand).empty();
    return is_import ? value : out_.add(Operation::AWAITED, value);
}

ExpressionId EcmascriptReader::assignment(const Node& node) {
    const Node left = node.child(fields_.left);
    const Node right = node.child(fields_.right);
    const ExpressionId stated = documented_value(node);
    if (is_documented(node)) {
        pass_doc(node, assigned_value(right));
    }
    read_comments_among(node, 2);
    if (context_.locals == 0 && left.exists() && right.exists() && left.type() == "member_expression") {
        if (const std::optional<ExpressionId> exported = common_js_export(left, right)) {
            return *exported;
        }
        if (const std::optional<ExpressionId> member = assigned_member(left, right)) {
            return *member;
        }
    }
    const ExpressionId assigned = visit(left);
    const ExpressionId value = visit_expecting(right, stated == UNKNOWN ? assigned : stated);
    note_own_member(left, right, value, stated);
    return value;
}

ExpressionId EcmascriptReader::binary(const Node& node) {
    read_comments_among(node, 2);
    const ExpressionId left = visit(node.child(fields_.left));
    const ExpressionId right = visit(node.child(fields_.right));
    if (has_word(node, "||") || has_word(node, "??")) {
        return out_.one_of(std::array{left, right});
    }
    return has_word(node, "&&") ? right : out_.add(Operation::FOREIGN);
}

// `(value)`; behind a comment that states a type, a value of that.
ExpressionId EcmascriptReader::parenthesized(const Node& node) {
    return visit_expecting(node, UNKNOWN);
}

ExpressionId EcmascriptReader::ternary(const Node& node) {
    return visit_expecting(node, UNKNOWN);
}

ExpressionId EcmascriptReader::sequence(const Node& node) {
    return inner(node);
}

// Of what gives numbers, strings and truth.
ExpressionId EcmascriptReader::operation(const Node& node) {
    visit_children(node);
    return out_.add(Operation::FOREIGN);
}

ExpressionId EcmascriptReader::array(const Node& node) {
    return visit_expecting(node, UNKNOWN);
}

ExpressionId EcmascriptReader::object(const Node& node) {
    return read_object(node, UNKNOWN);
}

// Reads an expression whose type is stated beside it: the keys of a literal are members of that.
ExpressionId EcmascriptReader::visit_expecting(const Node& node, ExpressionId expected) {
    const std::string_view type = node.exists() ? node.type() : "";
    if (type == "object") {
        return read_object(node, expected);
    }
    if (type == "arrow_function" || type == "function_expression") {
        return function_value(node, {.function = expected});
    }
    if (type == "parenthesized_expression") {
        const ExpressionId stated = documented_value(node);
        ExpressionId value = UNKNOWN;
        for_each_child(node, [&](const Node& child, TSFieldId) {
            const ExpressionId read = visit_expecting(child, stated == UNKNOWN ? expected : stated);
            value = child.type() == "comment" ? value : read;
        });
        return stated == UNKNOWN ? value : stated;
    }
    if (type == "ternary_expression") {
        read_comments_among(node, 3);
        visit(node.child(fields_.condition));
        const ExpressionId one = visit_expecting(node.child(fields_.consequence), expected);
        return out_.one_of(std::array{one, visit_expecting(node.child(fields_.alternative), expected)});
    }
    if (type == "array") {
        return read_array(node, expected);
    }
    return visit(node);
}

ExpressionId EcmascriptReader::read_array(const Node& node, ExpressionId expected) {
    std::vector<ExpressionId> elements;
    bool is_known = true;
    const ExpressionId each = expected == UNKNOWN ? UNKNOWN : out_.add(Operation::ELEMENT, expected);
    for_each_child(node, [&](const Node& child, TSFieldId) {
        elements.push_back(visit_expecting(child, each));
        is_known = is_known && elements.back() != UNKNOWN && child.type() != "spread_element";
    });
    const ExpressionId element = is_known && elements.size() <= MOST_ELEMENTS ? out_.one_of(elements) : UNKNOWN;
    return out_.instance(
        out_.add(Operation::LIST, element == UNKNOWN ? UNKNOWN : out_.add(Operation::TYPE_OF, element)));
}

// A literal is of a type of its own, whose members are its keys, unless its type is stated.
ExpressionId EcmascriptReader::read_object(const Node& node, ExpressionId expected) {
    const Saved saved(context_);
    const ExpressionId self_around = has_types() ? UNKNOWN : context_.self;
    context_.is_static = false;
    const syntax::DeclarationId type = declare_hidden_type();
    context_.container = type;
    context_.type = syntax::NO_DECLARATION;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        const std::string_view kind = child.type();
        context_.self = kind == "method_definition" ? UNKNOWN : self_around;
        if (kind == "pair") {
            read_pair(child, expected);
        } else if (kind == "shorthand_property_identifier") {
            const ExpressionId value = visit(child);
            if (expected != UNKNOWN) {
                out_.use_member(expected, token(child, Role::KEY));
            }
            const syntax::DeclarationId member = declare_member(child, syntax::Kind::VALUE);
            out_.declaration(member).is_hidden = true;
            out_.declaration(member).type = value;
        } else {
            visit(child);
        }
    });
    return expected != UNKNOWN ? expected : out_.instance(out_.add(Operation::DECLARATION, type));
}

ExpressionId EcmascriptReader::read_pair(const Node& node, ExpressionId expected) {
    const Node key = node.child(fields_.key);
    const Node value = node.child(fields_.value);
    const ExpressionId stated = documented_value(node);
    pass_doc(node, value);
    read_comments_among(node, 2);
    ExpressionId member = UNKNOWN;
    if (key.exists() && key.type() == "computed_property_name") {
        visit(key);
    } else if (key.exists()) {
        const syntax::DeclarationId declared = declare_member(key, syntax::Kind::VALUE);
        out_.declaration(declared).is_hidden = true;
        if (expected != UNKNOWN) {
            syntax::Token token = this->token(key, Role::KEY);
            token.name = name_text(key);
            member = out_.use_member(expected, token);
        }
        const ExpressionId of_value = visit_expecting(value, stated == UNKNOWN ? member : stated);
        out_.declaration(declared).type = stated == UNKNOWN ? of_value : stated;
        return UNKNOWN;
    }
    return visit_expecting(value, member);
}

// An element of JSX: names in lower case are those of HTML. Its attributes are members of what the component takes.
ExpressionId EcmascriptReader::element(const Node& node) {
    const Node name = node.child(fields_.name);
    ExpressionId properties = UNKNOWN;
    if (name.exists() && (name.type() == "member_expression" || begins_in_upper_case(text(name)))) {
        properties = out_.add(Operation::ARGUMENT, callee(name, syntax::Declaration::ANY_NUMBER));
    }
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (child.type() == "jsx_attribute") {
            read_attribute(child, properties);
        } else if (field != fields_.name) {
            visit(child);
        }
    });
    return out_.add(Operation::FOREIGN);
}

void EcmascriptReader::read_attribute(const Node& node, ExpressionId properties) {
    ExpressionId member = UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "property_identifier" && properties != UNKNOWN) {
            member = out_.use_member(properties, token(child, Role::KEY));
        } else if (child.type() == "jsx_expression") {
            visit_expecting(child.named_child(0), member);
        } else {
            visit(child);
        }
    });
}

}  // namespace host::sources
