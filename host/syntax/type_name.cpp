#include "host/syntax/type_name.h"

namespace host::syntax {

std::string_view type_name(const Syntax& syntax, ExpressionId id) {
    constexpr int DEEPEST = 8;
    for (int depth = 0; depth < DEEPEST; ++depth) {
        const Expression& expression = syntax.expressions[id];
        switch (expression.operation) {
        case Operation::NAME:
        case Operation::GLOBAL:
        case Operation::MEMBER:
            return syntax.name(expression.name);
        case Operation::DECLARATION:
            return syntax.written_name(syntax.declarations[expression.a]);
        case Operation::GENERIC:
        case Operation::POINTER:
        case Operation::INSTANCE:
            id = expression.a;
            break;
        default:
            return {};
        }
    }
    return {};
}

}  // namespace host::syntax
