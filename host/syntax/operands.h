// What the operands of an expression are indexes of.
#pragma once

#include "host/syntax/syntax.h"

#include <cstdint>

namespace host::syntax {

enum class Operand : std::uint8_t {
    NUMBER,       ///< of nothing in the syntax
    EXPRESSION,   ///< `ExpressionId`
    LIST,         ///< `ListId`
    DECLARATION,  ///< `DeclarationId`, possibly NO_DECLARATION
    IMPORT,       ///< index in `Syntax::imports`
};

struct Operands {
    Operand a = Operand::NUMBER;
    Operand b = Operand::NUMBER;
};

constexpr Operands operands_of(Operation operation) {
    switch (operation) {
    case Operation::NOTHING:
    case Operation::GLOBAL:
    case Operation::FOREIGN:
        break;
    case Operation::NAME:
    case Operation::DECLARATION:
    case Operation::SELF:
    case Operation::SELF_TYPE:
    case Operation::SUPER:
        return {.a = Operand::DECLARATION};
    case Operation::IMPORT:
        return {.a = Operand::IMPORT};
    case Operation::MEMBER:
    case Operation::LOCAL:
    case Operation::INSTANCE:
    case Operation::ARGUMENT:
    case Operation::ELEMENT:
    case Operation::KEY:
    case Operation::ITERATED:
    case Operation::COMPONENT:
    case Operation::AWAITED:
    case Operation::TARGET:
    case Operation::LIST:
    case Operation::POINTER:
    case Operation::AWAITABLE:
    case Operation::PARAMETER:
    case Operation::TYPE_OF:
        return {.a = Operand::EXPRESSION};
    case Operation::ONE_OF:
    case Operation::TUPLE:
        return {.a = Operand::LIST};
    case Operation::MAP:
        return {.a = Operand::EXPRESSION, .b = Operand::EXPRESSION};
    case Operation::CALL:
    case Operation::FUNCTION:
    case Operation::GENERIC:
        return {.a = Operand::EXPRESSION, .b = Operand::LIST};
    }
    return {};
}

}  // namespace host::syntax
