// Expressions of Python, but for calls, displays and comprehensions.
#include "host/sources/python/python_reader.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Operation;

ExpressionId PythonReader::read_name(const Node& node) {
    return use(token(node));
}

// A class sees the names that it has bound so far, the functions and comprehensions in it do not.
ExpressionId PythonReader::use(const syntax::Token& token) {
    const Scope& around = scopes_.back();
    if (around.kind == Scope::Kind::CLASS && around.comprehensions == 0) {
        const auto bound = around.bindings.find(token.name);
        if (bound != around.bindings.end() && bound->second.declaration != syntax::NO_DECLARATION) {
            const ExpressionId declaration = out_.add(Operation::DECLARATION, bound->second.declaration);
            out_.mention(declaration, token);
            return declaration;
        }
    }
    return out_.use(token);
}

ExpressionId PythonReader::read_attribute(const Node& node) {
    const Node object = node.child(fields().object);
    const Node name = node.child(fields().attribute);
    const Scope* const method = method_of_self(text(object));
    if (method != nullptr && text(name) == "__class__") {
        return out_.add(Operation::SELF_TYPE, scopes_[method->class_of_self].declaration);
    }
    return out_.use_member(visit(object), token(name));
}

ExpressionId PythonReader::read_subscript(const Node& node) {
    const Node container = node.child(fields().value);
    if (form_of(container) != TypingForm::NONE) {
        return read_subscripted_type(node);
    }
    const ExpressionId value = visit(container);
    bool is_slice = false;
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field == fields().subscript) {
            visit(child);
            is_slice = child.type() == "slice";
        }
    });
    return is_slice ? value : out_.add(Operation::ELEMENT, value);
}

ExpressionId PythonReader::read_await(const Node& node) {
    return out_.add(Operation::AWAITED, read_inner(node));
}

// What is of a type of the language, whatever it is made of.
ExpressionId PythonReader::read_literal(const Node& node) {
    visit_children(node);
    return out_.add(Operation::FOREIGN);
}

// What stands alone in a node is what that is.
ExpressionId PythonReader::read_inner(const Node& node) {
    const std::vector<ExpressionId> all = read_all(node);
    return all.size() == 1 ? all.front() : syntax::UNKNOWN;
}

// `a or b` is either; of `a and b`, an `a` that counts as false has no members to speak of.
ExpressionId PythonReader::read_boolean(const Node& node) {
    const ExpressionId left = visit(node.child(fields().left));
    const ExpressionId right = visit(node.child(fields().right));
    return text(node.child(fields().operator_)) == "or" ? joined({left, right}) : right;
}

// `a if b else c`
ExpressionId PythonReader::read_conditional(const Node& node) {
    const std::vector<ExpressionId> all = read_all(node);
    return all.size() == 3 ? joined({all.front(), all.back()}) : syntax::UNKNOWN;
}

}  // namespace host::sources
