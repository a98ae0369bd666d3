// What a file states about names, as text for tests.
#pragma once

#include "host/syntax/syntax.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace host::syntax {

/// Returns an expression as text: "call(member(instance(Store) find))". Names in the space of types have a "'" behind
/// them, a name looked up around a declaration has that before it: "f/Store'".
inline std::string text_of(const Syntax& syntax, ExpressionId id) {
    constexpr std::array<std::string_view, 30> OPERATIONS{
        "?",         "name",     "global",  "member",    "declaration", "import",  "local", "self",
        "self_type", "super",    "of",      "call",      "argument",    "element", "key",   "iterated",
        "component", "awaited",  "target",  "one_of",    "list",        "map",     "tuple", "pointer",
        "awaitable", "function", "generic", "parameter", "type_of",     "foreign"};
    const Expression& expression = syntax.expressions[id];
    std::string operation(OPERATIONS.at(static_cast<std::size_t>(expression.operation)));
    const std::string name(syntax.name(expression.name));
    const std::string space = expression.b == static_cast<std::uint32_t>(Space::TYPE) ? "'" : "";
    const auto all = [&](ListId list) {
        std::string text;
        for (const ExpressionId each : syntax.list(list)) {
            text += " " + text_of(syntax, each);
        }
        return text;
    };
    switch (expression.operation) {
    case Operation::NOTHING:
    case Operation::FOREIGN:
    case Operation::SELF:
    case Operation::SELF_TYPE:
    case Operation::SUPER:
        return operation;
    case Operation::NAME: {
        const bool is_at_top = expression.a == NO_DECLARATION;
        return (is_at_top ? "" : std::string(syntax.name(syntax.declarations[expression.a].name)) + "/") + name + space;
    }
    case Operation::GLOBAL:
        return "::" + name + space;
    case Operation::MEMBER:
        return text_of(syntax, expression.a) + "." + name + space;
    case Operation::DECLARATION:
        return "@" + std::string(syntax.name(syntax.declarations[expression.a].name));
    case Operation::IMPORT: {
        const Import& import = syntax.imports[expression.a];
        return "import(" + std::string(syntax.name(import.module)) + " " + std::string(syntax.name(import.original)) +
               ")";
    }
    case Operation::ONE_OF:
    case Operation::TUPLE:
        return operation + "(" + all(expression.a).erase(0, 1) + ")";
    case Operation::MAP:
        return operation + "(" + text_of(syntax, expression.a) + " " + text_of(syntax, expression.b) + ")";
    case Operation::GENERIC:
        return text_of(syntax, expression.a) + "<" + all(expression.b).erase(0, 1) + ">";
    case Operation::COMPONENT:
        return text_of(syntax, expression.a) + "[" + std::to_string(expression.b) + "]";
    case Operation::ARGUMENT:
        return "argument" + std::to_string(expression.b) + "(" + text_of(syntax, expression.a) + ")";
    case Operation::PARAMETER:
        return "parameter" + std::to_string(expression.b) + "(" + text_of(syntax, expression.a) + ")";
    default:
        return operation + "(" + text_of(syntax, expression.a) + ")";
    }
}

/// Returns the mentions, one a line, in the order in which they are first found: "2 call of(f/Store').find", with the
/// line of the first and " x2" behind those that are found several times.
inline std::string mentions_of(const Syntax& syntax) {
    constexpr std::array<std::string_view, 5> ROLES{"value", "call", "type", "import", "key"};
    std::string text;
    for (const Mention& mention : syntax.mentions) {
        text += std::to_string(mention.line) + " " + std::string(ROLES.at(static_cast<std::size_t>(mention.role))) +
                " " + text_of(syntax, mention.expression) +
                (mention.count == 1 ? "" : " x" + std::to_string(mention.count)) + "\n";
    }
    return text;
}

}  // namespace host::syntax
