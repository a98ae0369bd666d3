// What binds names in Python: assignments, loops, `with`, `except`.
#include "host/sources/python/python_reader.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;

// The root of a damaged tree is no module.
syntax::Syntax PythonReader::read(const Node& root) {
    visit(root);
    settle(scopes_.front());
    return out_.finish();
}

// Has what a scope declares be what is assigned to it.
void PythonReader::settle(const Scope& scope) {
    for (const auto& [name, binding] : scope.bindings) {
        if (binding.declaration != syntax::NO_DECLARATION &&
            out_.declaration(binding.declaration).kind == Kind::VALUE) {
            const ExpressionId value = joined(binding.values);
            out_.declaration(binding.declaration).type = value;
        }
    }
}

ExpressionId PythonReader::read_assignment(const Node& node) {
    const Node stated = node.child(fields().type);
    const Node right = node.child(fields().right);
    const Node left = node.child(fields().left);
    const bool is_alias = stated.exists() && form_of(stated.named_child(0)) == TypingForm::ALIAS;
    const ExpressionId value = is_alias ? read_type(right) : visit(right);
    const ExpressionId type = visit(stated);
    if (right.exists() && right.type() == "call" && text(right.child(fields().function)).ends_with("TypeVar")) {
        type_variables_.insert(text(left));
    }
    const bool is_annotated = type != syntax::UNKNOWN && !is_alias;
    if (left.exists()) {
        bind_target(left, is_annotated ? out_.instance(type) : value, is_annotated);
    }
    return value;
}

ExpressionId PythonReader::read_walrus(const Node& node) {
    const ExpressionId value = visit(node.child(fields().value));
    const Node name = node.child(fields().name);
    if (const std::size_t comprehensions = scopes_.back().comprehensions; comprehensions == 0) {
        bind_target(name, value);
    } else {
        out_.bind_in(comprehensions, text(name), value);
    }
    return value;
}

ExpressionId PythonReader::read_for(const Node& node) {
    bind_target(node.child(fields().left), out_.add(Operation::ITERATED, visit(node.child(fields().right))));
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field != fields().left && field != fields().right) {
            visit(child);
        }
    });
    return syntax::UNKNOWN;
}

// `with A() as a`: what entering gives.
ExpressionId PythonReader::read_with(const Node& node) {
    const bool is_async = text(node).starts_with("async");
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() != "with_clause") {
            visit(child);
            return;
        }
        for_each_child(child, [&](const Node& item, TSFieldId) {
            const Node value = item.child(fields().value);
            const Node target = value.child(fields().alias);
            if (!target.exists()) {
                visit(item);
                return;
            }
            const ExpressionId context = visit(value.named_child(0));
            const ExpressionId entered =
                out_.add(Operation::CALL, member(context, is_async ? "__aenter__" : "__enter__"));
            bind_target(target, is_async ? out_.add(Operation::AWAITED, entered) : entered);
        });
    });
    return syntax::UNKNOWN;
}

// `except A as a`, `except (A, B) as a`, and `case A() as a`.
ExpressionId PythonReader::read_as_pattern(const Node& node) {
    const Node alias = node.child(fields().alias);
    if (alias.exists()) {
        const Node first = node.named_child(0);
        const ExpressionId type = visit(first);
        const bool is_tuple = first.exists() && first.type() == "tuple";
        bind_target(alias, out_.instance(is_tuple ? out_.add(Operation::ITERATED, type) : type));
        return syntax::UNKNOWN;
    }
    ExpressionId matched = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "identifier") {
            bind_target(child, matched);
        } else {
            matched = visit(child);
        }
    });
    return matched;
}

ExpressionId PythonReader::read_global(const Node& node) {
    const bool is_global = node.type() == "global_statement";
    for_each_child(node, [&](const Node& name, TSFieldId) {
        if (scopes_.back().kind == Scope::Kind::FUNCTION) {
            out_.release(text(name));
            if (is_global) {
                scopes_.back().globals.insert(text(name));
            }
        }
        use(token(name));
    });
    return syntax::UNKNOWN;
}

void PythonReader::bind_target(const Node& target, ExpressionId value, bool is_annotated) {
    if (!target.exists()) {
        return;
    }
    const std::string_view type = target.type();
    if (type == "identifier") {
        bind_name(target, value, is_annotated);
    } else if (type == "attribute") {
        bind_attribute(target, value, is_annotated);
    } else if (type == "as_pattern_target" || type == "parenthesized_expression") {
        bind_target(target.named_child(0), value);
    } else if (type == "list_splat_pattern" || type == "list_splat") {
        bind_target(target.named_child(0), syntax::UNKNOWN);
    } else if (type.ends_with("_pattern") || type == "pattern_list" || type == "tuple" || type == "list") {
        std::uint32_t at = 0;
        bool is_counted = value != syntax::UNKNOWN;  // until a splat takes some of them
        for_each_child(target, [&](const Node& part, TSFieldId) {
            is_counted = is_counted && part.type() != "list_splat_pattern";
            bind_target(part, is_counted ? out_.add(Operation::COMPONENT, value, at++) : syntax::UNKNOWN);
        });
    } else {
        visit(target);
    }
}

void PythonReader::bind_name(const Node& name, ExpressionId value, bool is_annotated) {
    const std::string_view written = text(name);
    Scope& scope = scopes_.back();
    if (scope.comprehensions > 0) {
        out_.bind(written, value);
        return;
    }
    if (scope.kind == Scope::Kind::FUNCTION) {
        if (scope.globals.contains(written)) {
            if (const auto of_file = scopes_.front().bindings.find(written);
                of_file != scopes_.front().bindings.end()) {
                add_value(of_file->second, value, is_annotated);
            }
        } else if (is_annotated ? scope.annotated.insert(written).second : !scope.annotated.contains(written)) {
            out_.bind(written, value);
        }
        return;
    }
    Binding& binding = scope.bindings[written];
    if (binding.declaration == syntax::NO_DECLARATION) {
        binding.declaration = out_.declare({.name = out_.name(written),
                                            .kind = Kind::VALUE,
                                            .parent = scope.declaration,
                                            .offset = name.begin(),
                                            .is_hidden = scope.is_hidden});
    }
    const bool is_enumerator = scope.is_enumeration && !is_annotated;
    add_value(binding, is_enumerator ? out_.instance(out_.add(Operation::DECLARATION, scope.declaration)) : value,
              is_annotated);
}

// What is first assigned to an attribute of `self` declares it, unless the class itself does.
void PythonReader::bind_attribute(const Node& attribute, ExpressionId value, bool is_annotated) {
    const Scope* const method = method_of_self(text(attribute.child(fields().object)));
    if (method == nullptr) {
        visit(attribute);
        return;
    }
    const Node name = attribute.child(fields().attribute);
    Scope& type = scopes_[method->class_of_self];
    const auto [found, is_new] = type.bindings.try_emplace(text(name));
    if (is_new) {
        found->second.declaration = out_.declare({.name = out_.name(text(name)),
                                                  .kind = Kind::VALUE,
                                                  .parent = type.declaration,
                                                  .offset = name.begin(),
                                                  .is_hidden = type.is_hidden,
                                                  .is_implicit = !is_annotated});
    } else {
        out_.use_member(method->self_value, token(name));
    }
    add_value(found->second, value, is_annotated);
}

void PythonReader::add_value(Binding& binding, ExpressionId value, bool is_annotated) {
    if (is_annotated && !binding.is_annotated) {
        binding.values.clear();
        binding.is_annotated = true;
    }
    if (is_annotated || !binding.is_annotated) {
        binding.values.push_back(value);
    }
}

// The method whose `self`, by whatever name, a name is. Null for other names.
const PythonReader::Scope* PythonReader::method_of_self(std::string_view name) const {
    for (std::size_t at = scopes_.size(); at-- > 1;) {
        const Scope& scope = scopes_[at];
        if (scope.class_of_self != 0 && scope.self == name) {
            return &scope;
        }
        if (scope.parameters.contains(name)) {
            return nullptr;
        }
    }
    return nullptr;
}

}  // namespace host::sources
