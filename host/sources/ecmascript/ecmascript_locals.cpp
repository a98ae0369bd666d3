// Blocks and variables: what binds locals.
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using std::string_view;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::UNKNOWN;

}  // namespace

ExpressionId EcmascriptReader::block(const Node& node) {
    const LocalScope scope(*this, LocalScope::Of::BLOCK);
    visit_children(node);
    return UNKNOWN;
}

ExpressionId EcmascriptReader::catch_clause(const Node& node) {
    const LocalScope scope(*this, LocalScope::Of::BLOCK);
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field == fields_.parameter) {
            bind_pattern(child, UNKNOWN, false);
        } else {
            visit(child);
        }
    });
    return UNKNOWN;
}

// `for (const a of b)`
ExpressionId EcmascriptReader::for_in(const Node& node) {
    const LocalScope scope(*this, LocalScope::Of::BLOCK);
    const ExpressionId container = visit(node.child(fields_.right));
    const Node left = node.child(fields_.left);
    const ExpressionId element =
        has_word(node, "of") ? out_.add(Operation::ELEMENT, container) : out_.add(Operation::FOREIGN);
    if (!node.child(fields_.kind).exists()) {
        visit(left);
    } else if (left.exists() && left.type() == "array_pattern" && has_word(node, "of")) {
        bind_entries(left, container, text(node.child(fields_.kind)) == "var");
    } else {
        bind_pattern(left, element, text(node.child(fields_.kind)) == "var");
    }
    visit(node.child(fields_.body));
    return UNKNOWN;
}

// `for (const [key, value] of container)`: of a map its keys and elements, else the components of each element.
void EcmascriptReader::bind_entries(const Node& pattern, ExpressionId container, bool is_var) {
    const ExpressionId element = out_.add(Operation::ITERATED, container);
    std::uint32_t at = 0;
    for_each_child(pattern, [&](const Node& child, TSFieldId) {
        const ExpressionId component = out_.add(Operation::COMPONENT, element, at);
        const ExpressionId of_map = out_.add(at == 0 ? Operation::KEY : Operation::ELEMENT, container);
        bind_pattern(child, at > 1 ? component : out_.one_of(std::array{of_map, component}), is_var);
        ++at;
    });
}

ExpressionId EcmascriptReader::variables(const Node& node) {
    const bool is_var = node.type() == "variable_declaration";
    bool is_first = true;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "variable_declarator") {
            if (is_first) {
                pass_doc(node, child);
            }
            is_first = false;
            read_variable(child, is_var);
        } else {
            visit(child);
        }
    });
    return UNKNOWN;
}

void EcmascriptReader::read_variable(const Node& node, bool is_var) {
    const Node name = node.child(fields_.name);
    const Node type = node.child(fields_.type);
    Node initial = node.child(fields_.value);
    if (!name.exists()) {
        return;
    }
    const bool is_of_file = context_.locals == (is_var ? context_.blocks : 0);
    if (is_of_file && read_required(name, initial)) {
        return;
    }
    if (context_.locals == 0 && initial.exists() && name.type() == "identifier") {
        initial = exported_as(initial, text(name));
    }
    const ExpressionId stated = type.exists() ? value_of_type(type) : documented_value(node);
    pass_doc(node, initial);
    read_comments_among(node, 2);
    // A declaration comes before those in its value.
    const bool is_declaration = context_.locals == 0 && name.type() == "identifier";
    const syntax::DeclarationId declared = is_declaration ? declare(name, Kind::VALUE) : syntax::NO_DECLARATION;
    const ExpressionId initial_value = visit_expecting(initial, stated);
    const ExpressionId value = type.exists() || stated != UNKNOWN ? stated : initial_value;
    if (is_declaration) {
        out_.declaration(declared).type = value;
    } else {
        bind_pattern(name, value, is_var);
    }
}

void EcmascriptReader::bind_name(const Node& name, ExpressionId value, bool is_var) {
    if (context_.locals == 0) {
        const syntax::DeclarationId declared = declare(name, Kind::VALUE);
        out_.declaration(declared).type = value;
    } else {
        out_.bind_in(is_var ? context_.blocks : 0, text(name), value);
    }
}

void EcmascriptReader::bind_pattern(const Node& pattern, ExpressionId value, bool is_var) {
    if (!pattern.exists()) {
        return;
    }
    const string_view type = pattern.type();
    if (type == "identifier" || type == "shorthand_property_identifier_pattern") {
        bind_name(pattern, value, is_var);
    } else if (type == "object_pattern") {
        bind_object_pattern(pattern, value, is_var);
    } else if (type == "array_pattern") {
        bind_array_pattern(pattern, value, is_var);
    } else if (type == "rest_pattern") {
        bind_pattern(pattern.named_child(0), value, is_var);
    } else if (type == "assignment_pattern" || type == "object_assignment_pattern") {
        const ExpressionId initial = visit_expecting(pattern.child(fields_.right), value);
        bind_pattern(pattern.child(fields_.left), value == UNKNOWN ? initial : value, is_var);
    } else {
        visit(pattern);
    }
}

// `{a, b: c = 1, ...rest}`: each names a member of the value.
void EcmascriptReader::bind_object_pattern(const Node& pattern, ExpressionId value, bool is_var) {
    for_each_child(pattern, [&](const Node& child, TSFieldId) {
        const string_view type = child.type();
        if (type == "pair_pattern") {
            const Node key = child.child(fields_.key);
            ExpressionId member = UNKNOWN;
            if (key.exists() && key.type() != "computed_property_name") {
                syntax::Token token = this->token(key, Role::KEY);
                token.name = name_text(key);
                member = out_.use_member(value, token);
            } else {
                visit(key);
            }
            bind_pattern(child.child(fields_.value), member, is_var);
        } else if (type == "object_assignment_pattern") {
            const Node name = child.child(fields_.left);
            const ExpressionId member = name.exists() ? out_.use_member(value, token(name, Role::KEY)) : UNKNOWN;
            const ExpressionId initial = visit_expecting(child.child(fields_.right), member);
            bind_pattern(name, value == UNKNOWN ? initial : member, is_var);
        } else if (type == "shorthand_property_identifier_pattern") {
            bind_pattern(child, out_.use_member(value, token(child, Role::KEY)), is_var);
        } else {
            bind_pattern(child, value, is_var);
        }
    });
}

void EcmascriptReader::bind_array_pattern(const Node& pattern, ExpressionId value, bool is_var) {
    std::uint32_t at = 0;
    for_each_child(
        pattern,
        [&](const Node& child, TSFieldId) {
            if (child.type() == ",") {
                ++at;
            } else if (child.type() == "rest_pattern") {
                bind_pattern(child, value, is_var);
            } else if (child.type() != "[" && child.type() != "]" && child.type() != "comment") {
                bind_pattern(child, out_.add(Operation::COMPONENT, value, at), is_var);
            }
        },
        true);
}

}  // namespace host::sources
