// Calls: of functions, of methods of containers, of `require` and `import`.
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using std::string_view;
using syntax::ExpressionId;
using syntax::Operation;
using syntax::Role;
using syntax::UNKNOWN;

// Methods of arrays whose first argument is called with an element; of reduce(), the second parameter is one.
constexpr std::array<string_view, 12> CALLED_WITH_ELEMENTS{"every",    "filter",  "find",     "findIndex",
                                                           "findLast", "flatMap", "forEach",  "map",
                                                           "some",     "sort",    "toSorted", "findLastIndex"};
// Methods of containers that give an element, and arrays or iterators of their elements.
constexpr std::array<string_view, 7> GIVES_ELEMENT{"at", "find", "findLast", "get", "pop", "shift", "next"};
constexpr std::array<string_view, 8> GIVES_ELEMENTS{"concat", "filter", "reverse",  "slice",
                                                    "sort",   "splice", "toSorted", "values"};

}  // namespace

// Returns the module that a call of `require` or `import` names; empty for other calls.
string_view EcmascriptReader::module_of_call(const Node& node) const {
    const Node function = node.child(fields_.function);
    const bool is_import = function.exists() && function.type() == "import";
    const bool is_require = function.exists() && text(function) == "require" && !own_names_.contains("require");
    const Node arguments = node.child(fields_.arguments);
    const Node module = arguments.exists() ? arguments.named_child(0) : Node();
    const bool is_named = (is_import || is_require) && module.exists() && module.type() == "string";
    return is_named ? string_value(module) : string_view();
}

ExpressionId EcmascriptReader::required_module(const Node& node) {
    const string_view module = module_of_call(node);
    return out_.add(Operation::IMPORT, out_.import({.module = out_.name(module), .is_in_function = true}));
}

// How many arguments a call has; ANY_NUMBER where one is spread.
std::uint8_t EcmascriptReader::argument_count(const Node& arguments) {
    std::size_t count = 0;
    bool is_known = arguments.exists();
    if (is_known) {
        for_each_child(arguments, [&](const Node& child, TSFieldId) {
            is_known = is_known && child.type() != "spread_element";
            count += child.type() == "comment" ? 0 : 1;
        });
    }
    return is_known && count < syntax::Declaration::ANY_NUMBER ? static_cast<std::uint8_t>(count)
                                                               : syntax::Declaration::ANY_NUMBER;
}

ExpressionId EcmascriptReader::callee(const Node& node, std::uint8_t arguments) {
    if (node.exists() && node.type() == "identifier") {
        syntax::Token token = this->token(node, Role::CALL);
        token.arguments = arguments;
        return out_.use(token);
    }
    if (node.exists() && node.type() == "member_expression") {
        if (const std::optional<ExpressionId> exported = own_export(node, Role::CALL, arguments)) {
            return *exported;
        }
        return property(visit(node.child(fields_.object)), node.child(fields_.property), Role::CALL, arguments);
    }
    return visit(node);
}

ExpressionId EcmascriptReader::call(const Node& node) {
    if (!module_of_call(node).empty()) {
        return required_module(node);
    }
    const Node function = node.child(fields_.function);
    const Node arguments = node.child(fields_.arguments);
    const bool has_list = arguments.exists() && arguments.type() == "arguments";  // else a template
    const std::uint8_t count = argument_count(has_list ? arguments : Node());
    const bool is_method = function.exists() && function.type() == "member_expression";
    const bool is_of_value = is_method && !is_own_exports(function.child(fields_.object));
    const ExpressionId of = is_of_value ? visit(function.child(fields_.object)) : UNKNOWN;
    const ExpressionId called =
        is_of_value ? property(of, function.child(fields_.property), Role::CALL, count) : callee(function, count);
    visit(node.child(fields_.type_arguments));
    const string_view method = is_method ? text(function.child(fields_.property)) : string_view();
    if (has_list) {
        read_arguments(arguments, called, method, of);
    } else {
        visit(arguments);
    }
    if (function.exists() && function.type() == "super") {
        return UNKNOWN;
    }
    return container_call(of, method, out_.add(Operation::CALL, called));
}

// What a method of a container gives: where the container is an array, what is called is the language's own.
ExpressionId EcmascriptReader::container_call(ExpressionId of, string_view name, ExpressionId called) {
    if (of == UNKNOWN) {
        return called;
    }
    const ExpressionId element = out_.add(Operation::ELEMENT, of);
    if (is_one_of(name, GIVES_ELEMENT)) {
        return out_.one_of(std::array{called, element});
    }
    if (is_one_of(name, GIVES_ELEMENTS)) {
        return out_.one_of(std::array{called, out_.instance(out_.add(Operation::LIST, element))});
    }
    return called;
}

// Reads the arguments of a call. A method such as `map` of a container `of` calls what it is given with its elements.
// Returns the value of the first argument.
ExpressionId EcmascriptReader::read_arguments(const Node& node, ExpressionId called, string_view method,
                                              ExpressionId of) {
    Arguments elements;
    if (of != UNKNOWN && is_one_of(method, CALLED_WITH_ELEMENTS)) {
        elements.known.push_back(out_.add(Operation::ELEMENT, of));
        if (method == "sort" || method == "toSorted") {
            elements.known.push_back(elements.known.front());
        }
    } else if (of != UNKNOWN && method == "reduce") {
        elements.known = {UNKNOWN, out_.add(Operation::ELEMENT, of)};
    }
    std::uint32_t at = 0;
    ExpressionId first = UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "comment") {
            visit(child);
            return;
        }
        const ExpressionId expected = called == UNKNOWN ? UNKNOWN : out_.add(Operation::ARGUMENT, called, at);
        if (child.type() == "arrow_function" || child.type() == "function_expression") {
            elements.function = expected;
            function_value(child, elements);
        } else {
            const ExpressionId value = visit_expecting(child, expected);
            first = at == 0 ? value : first;
        }
        ++at;
        elements.known.clear();
    });
    return first;
}

// `new T(...)`: an instance of a class. `new Set(a)` has the elements of `a`.
ExpressionId EcmascriptReader::creation(const Node& node) {
    const Node constructor = node.child(fields_.constructor_);
    const ExpressionId type = callee(constructor, argument_count(node.child(fields_.arguments)));
    const std::vector<ExpressionId> arguments = types_in(node.child(fields_.type_arguments));
    const Node list = node.child(fields_.arguments);
    const ExpressionId first = list.exists() ? read_arguments(list, type, "", UNKNOWN) : UNKNOWN;
    if (constructor.exists() && constructor.type() == "identifier" && is_built_in(text(constructor))) {
        const bool has_elements = arguments.empty() && first != UNKNOWN && text(constructor) == "Set";
        const ExpressionId built =
            out_.instance(has_elements ? out_.add(Operation::LIST, out_.add(Operation::ELEMENT, first))
                                       : built_in(text(constructor), arguments));
        return built == UNKNOWN ? out_.add(Operation::FOREIGN) : built;
    }
    return out_.instance(arguments.empty() ? type : out_.add(Operation::GENERIC, type, out_.list(arguments)));
}

}  // namespace host::sources
