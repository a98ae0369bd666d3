#include "host/resolve/evaluator.h"

#include <algorithm>

namespace host::resolve {

namespace {

using syntax::Operation;

}  // namespace

void add_once(Meaning& meaning, const Entity& entity) {
    if (std::ranges::find(meaning, entity) == meaning.end()) {
        meaning.push_back(entity);
    }
}

void add_once(Meaning& meaning, const Meaning& more) {
    if (meaning.empty()) {
        meaning = more;
        return;
    }
    for (const Entity& entity : more) {
        add_once(meaning, entity);
    }
}

Meaning Evaluator::evaluate(const Place& place) {
    return place.expression == syntax::UNKNOWN
               ? Meaning()
               : memory_.find({Subject::EXPRESSION, place.file, place.expression}, [&] { return compute(place); });
}

Meaning Evaluator::compute(const Place& place) {
    const FileId file = place.file;
    const syntax::Expression& expression = catalog_.syntax(file).expressions[place.expression];
    const auto symbol = [&](Entity::What what) {
        const Symbol type = enclosing_type(file, expression.a);
        return type == NONE ? Meaning() : Meaning{{.what = what, .id = type}};
    };
    switch (expression.operation) {
    case Operation::NOTHING:
        return {};
    case Operation::NAME:
        return named(file, expression);
    case Operation::GLOBAL:
        return global(file, expression);
    case Operation::MEMBER:
        return member(file, expression);
    case Operation::DECLARATION:
        return {{.what = Entity::What::SYMBOL, .id = catalog_.symbol(file, expression.a)}};
    case Operation::IMPORT:
        return import_meaning({file, expression.a});
    case Operation::LOCAL:
        return evaluate(file, expression.a);
    case Operation::SELF:
    case Operation::SUPER:
        return symbol(Entity::What::INSTANCE);
    case Operation::SELF_TYPE:
        return symbol(Entity::What::SYMBOL);
    case Operation::INSTANCE:
        return instances(values(file, expression.a));
    case Operation::CALL:
        return called(values(functions_called(place)));
    case Operation::ARGUMENT:
        return accepted(values(file, expression.a), expression);
    case Operation::ELEMENT:
    case Operation::KEY:
    case Operation::ITERATED:
    case Operation::COMPONENT:
    case Operation::AWAITED:
    case Operation::TARGET:
        return parts(values(file, expression.a), expression);
    case Operation::ONE_OF: {
        Meaning all;
        for (const syntax::ExpressionId each : catalog_.syntax(file).list(expression.a)) {
            add_once(all, values(file, each));
        }
        return all;
    }
    case Operation::LIST:
    case Operation::MAP:
    case Operation::TUPLE:
    case Operation::POINTER:
    case Operation::AWAITABLE:
    case Operation::FUNCTION:
    case Operation::TYPE_OF:
        return {{.what = Entity::What::STRUCTURE, .id = NONE, .at = place}};
    case Operation::GENERIC:
        return generic(file, expression, place);
    case Operation::PARAMETER:
        return {{.what = Entity::What::PARAMETER, .id = NONE, .at = place}};
    case Operation::FOREIGN:
        return {{.what = Entity::What::FOREIGN}};
    }
    return {};
}

}  // namespace host::resolve
