// Calls of Python.
#include "host/sources/python/python_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

using syntax::ExpressionId;
using syntax::Operation;
using syntax::Role;

namespace {

constexpr std::array<std::string_view, 8> PYTHON_LISTS{"frozenset", "iter",   "list",  "reversed",
                                                       "set",       "sorted", "tuple", "filter"};

}  // namespace

ExpressionId PythonReader::read_call(const Node& node) {
    const Node function = node.child(fields().function);
    const Node arguments = node.child(fields().arguments);
    const std::string_view name = text(function);
    const bool is_name = function.exists() && function.type() == "identifier";
    const bool is_attribute = function.exists() && function.type() == "attribute";
    const auto typing_name = typing_names_.find(name);
    if (typing_name != typing_names_.end() && typing_name->second == "cast") {
        visit(function);
        return read_cast(arguments);
    }
    const ExpressionId object = is_attribute ? visit(function.child(fields().object)) : syntax::UNKNOWN;
    const Node method = function.child(fields().attribute);
    const ExpressionId callee = is_name        ? use(token(function, Role::CALL))
                                : is_attribute ? out_.use_member(object, token(method, Role::CALL))
                                               : visit(function);
    const std::vector<ExpressionId> values = read_arguments(arguments, callee);
    const Scope* const type = class_around();
    if (is_name && name == "super" && type != nullptr) {
        return out_.add(Operation::SUPER, type->declaration);
    }
    if (is_name && !scopes_.front().bindings.contains(name)) {
        if (const ExpressionId value = call_of_builtin(name, values); value != syntax::UNKNOWN) {
            return value;
        }
    }
    const ExpressionId result = out_.add(Operation::CALL, callee);
    const ExpressionId of_container = is_attribute ? call_of_container(object, text(method)) : syntax::UNKNOWN;
    return of_container == syntax::UNKNOWN ? result : joined({result, of_container});
}

// What a method of the name gives that is one of a list or dictionary.
ExpressionId PythonReader::call_of_container(ExpressionId container, std::string_view method) {
    if (container == syntax::UNKNOWN) {
        return syntax::UNKNOWN;
    }
    const auto part = [&](Operation operation) { return out_.add(operation, container); };
    if (method == "get" || method == "pop" || method == "setdefault") {
        return part(Operation::ELEMENT);
    }
    if (method == "values") {
        return list_of(part(Operation::ELEMENT));
    }
    if (method == "keys") {
        return list_of(part(Operation::KEY));
    }
    return method == "items" ? list_of(tuple_of({part(Operation::KEY), part(Operation::ELEMENT)})) : syntax::UNKNOWN;
}

// `cast(Type, value)`
ExpressionId PythonReader::read_cast(const Node& arguments) {
    ExpressionId type = syntax::UNKNOWN;
    bool is_first = true;
    for_each_child(arguments, [&](const Node& argument, TSFieldId) {
        if (is_first) {
            type = read_type(argument);
        } else {
            visit(argument);
        }
        is_first = false;
    });
    return out_.instance(type);
}

// Returns the values of those without keywords. A keyword may name a field of the class that is called.
std::vector<ExpressionId> PythonReader::read_arguments(const Node& list, ExpressionId callee) {
    if (list.exists() && list.type() == "generator_expression") {
        return {visit(list)};
    }
    std::vector<ExpressionId> values;
    for_each_child(list, [&](const Node& argument, TSFieldId) {
        if (argument.type() == "keyword_argument") {
            if (callee != syntax::UNKNOWN) {
                out_.use_member(member(callee, KEYWORDS), token(argument.child(fields().name), Role::KEY));
            }
            visit(argument.child(fields().value));
        } else if (!ts_node_is_extra(argument.raw())) {
            values.push_back(visit(argument));
        }
    });
    return values;
}

ExpressionId PythonReader::call_of_builtin(std::string_view name, const std::vector<ExpressionId>& arguments) {
    if (arguments.empty()) {
        return syntax::UNKNOWN;
    }
    const auto iterated = [&](ExpressionId range) { return out_.add(Operation::ITERATED, range); };
    if (std::ranges::find(PYTHON_LISTS, name) != PYTHON_LISTS.end()) {
        return list_of(iterated(arguments.back()));
    }
    if (name == "enumerate") {
        return list_of(tuple_of({out_.add(Operation::FOREIGN), iterated(arguments.front())}));
    }
    if (name == "zip") {
        std::vector<ExpressionId> components;
        std::ranges::transform(arguments, std::back_inserter(components), iterated);
        return list_of(tuple_of(components));
    }
    return name == "next" ? iterated(arguments.front()) : syntax::UNKNOWN;
}

}  // namespace host::sources
