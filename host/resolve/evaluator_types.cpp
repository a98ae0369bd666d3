// Values: what variables hold, calls give, containers contain.
#include "host/resolve/definitions.h"
#include "host/resolve/evaluator.h"
#include "host/resolve/java_overloads.h"
#include "host/resolve/unwritten_names.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace host::resolve {

namespace {

using syntax::Kind;
using syntax::Operation;
using What = Entity::What;

// How many variables and aliases may stand for one another.
constexpr std::size_t LONGEST_CHAIN = 20;

using Types = std::vector<syntax::ExpressionId>;

// The types of what the operation `asked` gives of a value of a type that the text puts together.
Types types_of_parts(const syntax::Syntax& syntax, const syntax::Expression& structure,
                     const syntax::Expression& asked) {
    const bool is_element = asked.operation == Operation::ELEMENT;
    const bool is_iterated = asked.operation == Operation::ITERATED;
    const bool is_component = asked.operation == Operation::COMPONENT;
    const auto numbered = [&](syntax::ListId list) {
        const std::span<const syntax::ExpressionId> all = syntax.list(list);
        return asked.b < all.size() ? std::vector{all[asked.b]} : Types();
    };
    switch (structure.operation) {
    case Operation::LIST:
        return is_element || is_iterated || is_component ? std::vector{structure.a} : Types();
    case Operation::MAP:
        if (is_element) {
            return {structure.b};
        }
        return is_iterated || asked.operation == Operation::KEY ? std::vector{structure.a} : Types();
    case Operation::TUPLE:
        if (is_element || is_iterated) {
            const std::span<const syntax::ExpressionId> all = syntax.list(structure.a);
            return {all.begin(), all.end()};
        }
        return is_component ? numbered(structure.a) : Types();
    case Operation::FUNCTION:
        if (asked.operation == Operation::ARGUMENT) {
            return numbered(structure.b);
        }
        return asked.operation == Operation::CALL ? std::vector{structure.a} : Types();
    case Operation::AWAITABLE:
        return asked.operation == Operation::AWAITED ? std::vector{structure.a} : Types();
    case Operation::POINTER:
        return asked.operation == Operation::TARGET ? std::vector{structure.a} : Types();
    default:
        return {};
    }
}

}  // namespace

Meaning Evaluator::values(const Meaning& meaning) {
    Meaning found;
    for (const Entity& entity : meaning) {
        add_values(entity, 0, found);
    }
    return found;
}

void Evaluator::add_values(const Entity& entity, std::size_t depth, Meaning& found) {
    if (entity.what != What::SYMBOL) {
        add_once(found, entity);
        return;
    }
    for (const Symbol symbol : definitions(catalog_, std::array{entity.id})) {
        const syntax::Declaration& declaration = catalog_.declaration(symbol);
        const bool is_followed =
            declaration.kind == Kind::VALUE || declaration.kind == Kind::PROPERTY || declaration.kind == Kind::ALIAS;
        if (!is_followed) {
            add_once(found, Entity{.what = What::SYMBOL, .id = symbol, .at = entity.at});
        } else if (depth < LONGEST_CHAIN) {
            for (const Entity& each : substituted(evaluate(catalog_.file_of(symbol), declaration.type), entity.at)) {
                add_values(each, depth + 1, found);
            }
        }
    }
}

// Values of types; what is a value already stays.
Meaning Evaluator::instances(const Meaning& types) {
    Meaning found;
    for (Entity entity : types) {
        switch (entity.what) {
        case What::SYMBOL:
            if (catalog_.declaration(entity.id).kind != Kind::TYPE) {
                continue;
            }
            entity.what = What::INSTANCE;
            break;
        case What::STRUCTURE: {
            const syntax::Expression& structure = catalog_.syntax(entity.at.file).expressions[entity.at.expression];
            if (structure.operation == Operation::TYPE_OF) {
                add_once(found, values(entity.at.file, structure.a));
                continue;
            }
            entity.what = What::STRUCTURED;
            break;
        }
        case What::PARAMETER:
            entity.what = What::PARAMETRIC;
            break;
        case What::MODULE:
            continue;
        default:
            break;
        }
        add_once(found, entity);
    }
    return found;
}

Meaning Evaluator::functions_called(const Place& call) {
    const syntax::Syntax& syntax = catalog_.syntax(call.file);
    const syntax::Expression& expression = syntax.expressions[call.expression];
    const LanguageRules* const rules = languages_.rules(call.file);
    Meaning functions = evaluate(call.file, expression.a);
    if (rules != nullptr && rules->has_overloads) {
        return JavaOverloads(catalog_, *this).taking(functions, call.file, syntax.list(expression.b));
    }
    return functions;
}

// What calling gives: of a type an instance, of a function a value of the type of its result.
Meaning Evaluator::called(const Meaning& functions) {
    Meaning found;
    for (const Entity& function : functions) {
        switch (function.what) {
        case What::FOREIGN:
            add_once(found, function);
            break;
        case What::SYMBOL: {
            const syntax::Declaration& declaration = catalog_.declaration(function.id);
            if (declaration.kind == Kind::TYPE) {
                add_once(found, instances({function}));
            } else if (declaration.kind == Kind::FUNCTION) {
                const Meaning result = values(catalog_.file_of(function.id), declaration.type);
                add_once(found, substituted(instances(result), function.at));
            }
            break;
        }
        case What::STRUCTURE:  // a conversion
            add_once(found, instances({function}));
            break;
        case What::STRUCTURED:
        case What::INSTANCE:
            add_parts(function, {.operation = Operation::CALL}, 0, found);
            break;
        default:
            break;
        }
    }
    return found;
}

// What functions, or constructors of types, take as an argument.
Meaning Evaluator::accepted(const Meaning& functions, const syntax::Expression& argument) {
    Meaning found;
    for (const Entity& function : functions) {
        add_accepted(function, argument, 0, found);
    }
    return found;
}

// Of several functions of one name, which take different arguments, nothing is known.
void Evaluator::add_accepted(const Entity& function, const syntax::Expression& argument, std::size_t depth,
                             Meaning& found) {
    if (function.what != What::SYMBOL) {
        add_parts(function, argument, depth, found);
        return;
    }
    const syntax::Declaration& declaration = catalog_.declaration(function.id);
    if (declaration.kind == Kind::TYPE) {
        const Name constructor = catalog_.name(CONSTRUCTOR);
        const std::span<const Symbol> own = constructor == NONE
                                                ? std::span<const Symbol>()
                                                : catalog_.members(catalog_.container_of(function.id), constructor);
        if (own.size() == 1) {
            add_accepted({.what = What::SYMBOL, .id = own.front(), .at = function.at}, argument, depth, found);
        }
        if (own.empty() && depth < LONGEST_CHAIN) {
            for (const Entity& base : bases_of(function.id)) {
                add_accepted(base, argument, depth + 1, found);
            }
        }
        return;
    }
    const FileId file = catalog_.file_of(function.id);
    const std::span<const syntax::ExpressionId> parameters = catalog_.syntax(file).list(declaration.parameters);
    const Container home = catalog_.home_of(function.id);
    const bool is_alone = home == NONE || catalog_.members(home, catalog_.name_of(function.id)).size() == 1;
    if (is_alone && argument.b < parameters.size()) {
        add_once(found, substituted(instances(values(file, parameters[argument.b])), function.at));
    }
}

Meaning Evaluator::parts(const Meaning& wholes, const syntax::Expression& asked) {
    Meaning found;
    for (const Entity& whole : wholes) {
        add_parts(whole, asked, 0, found);
    }
    return found;
}

// Adds what the operation `asked` gives of a value: an element, a component, the result of a call.
void Evaluator::add_parts(const Entity& whole, const syntax::Expression& asked, std::size_t depth, Meaning& found) {
    const bool is_transparent = asked.operation == Operation::AWAITED || asked.operation == Operation::TARGET;
    const bool is_instantiated = whole.what == What::SYMBOL && asked.operation == Operation::ELEMENT;  // `Type[A]`
    if (whole.what == What::STRUCTURED) {
        add_parts_of_structure(whole, asked, depth, found);
    } else if (whole.what == What::INSTANCE && add_overloaded(whole, asked, depth, found)) {
        return;
    } else if (whole.what == What::FOREIGN || is_transparent || is_instantiated) {
        add_once(found, whole);
    } else if (whole.what == What::INSTANCE) {
        add_parts_of_instance(whole, asked, depth, found);
    }
}

// Of a type that is made of another one, or whose methods say what they are.
void Evaluator::add_parts_of_instance(const Entity& instance, const syntax::Expression& asked, std::size_t depth,
                                      Meaning& found) {
    const syntax::Declaration& type = catalog_.declaration(instance.id);
    if (type.type == syntax::UNKNOWN || depth >= LONGEST_CHAIN) {
        add_results_of_special_method(instance, asked, depth, found);
        return;
    }
    for (const Entity& each : instances(values(catalog_.file_of(instance.id), type.type))) {
        add_parts(each, asked, depth + 1, found);
    }
}

void Evaluator::add_parts_of_structure(const Entity& whole, const syntax::Expression& asked, std::size_t depth,
                                       Meaning& found) {
    const FileId file = whole.at.file;
    const syntax::Expression& structure = catalog_.syntax(file).expressions[whole.at.expression];
    // Where arrays are pointers, either gives what it holds in the way of the other.
    const bool is_as_the_other = (structure.operation == Operation::LIST && asked.operation == Operation::TARGET) ||
                                 (structure.operation == Operation::POINTER && asked.operation == Operation::ELEMENT);
    if (is_as_the_other && has_plain_pointers(file)) {
        add_once(found, instances(values(file, structure.a)));
        return;
    }
    const Types types = types_of_parts(catalog_.syntax(file), structure, asked);
    for (const syntax::ExpressionId type : types) {
        add_once(found, instances(values(file, type)));
    }
    if (asked.operation == Operation::AWAITED || asked.operation == Operation::TARGET) {
        if (types.empty()) {
            add_once(found, whole);
        }
    } else if (structure.operation == Operation::POINTER && depth < LONGEST_CHAIN) {
        for (const Entity& target : instances(values(file, structure.a))) {
            add_parts(target, asked, depth + 1, found);
        }
    }
}

// Python's classes have methods that say what an operation gives for their instances.
void Evaluator::add_results_of_special_method(const Entity& instance, const syntax::Expression& asked,
                                              std::size_t depth, Meaning& found) {
    const LanguageRules* const rules = languages_.rules(catalog_.file_of(instance.id));
    if (rules == nullptr || !rules->has_special_methods || depth >= LONGEST_CHAIN) {
        return;
    }
    const auto called_method = [&](const Entity& of, std::string_view method) {
        Meaning methods;
        MemberSearch search{.name = catalog_.name(method)};
        add_members_of_type(of.id, of.at, search, methods);
        return called(values(methods));
    };
    switch (asked.operation) {
    case Operation::CALL:
        add_once(found, called_method(instance, CALL_METHOD));
        break;
    case Operation::ELEMENT:
        add_once(found, called_method(instance, ELEMENT_METHOD));
        break;
    case Operation::ITERATED:
        for (const Entity& iterator : called_method(instance, ITERATOR_METHOD)) {
            if (iterator.what == What::INSTANCE) {
                add_once(found, called_method(iterator, NEXT_METHOD));
            } else {
                add_parts(iterator, asked, depth + 1, found);
            }
        }
        break;
    default:
        break;
    }
}

// Adds what an operator gives that the type of a value defines. Returns whether it defines that.
bool Evaluator::add_overloaded(const Entity& value, const syntax::Expression& asked, std::size_t depth,
                               Meaning& found) {
    if (!has_plain_pointers(catalog_.file_of(value.id)) || depth >= LONGEST_CHAIN) {
        return false;
    }
    const bool is_target = asked.operation == Operation::TARGET;
    const std::string_view name = is_target                               ? TARGET_OPERATOR
                                  : asked.operation == Operation::ELEMENT ? ELEMENT_OPERATOR
                                  : asked.operation == Operation::CALL    ? CALL_OPERATOR
                                                                          : "";
    Meaning operators;
    MemberSearch search{.name = name.empty() ? NONE : catalog_.name(name)};
    if (search.name == NONE || !add_members_of_type(value.id, value.at, search, operators)) {
        return false;
    }
    for (const Entity& result : called(operators)) {
        if (is_target) {
            add_parts(result, asked, depth + 1, found);
        } else {
            add_once(found, result);
        }
    }
    return true;
}

bool Evaluator::has_plain_pointers(FileId file) const {
    const LanguageRules* const rules = languages_.rules(file);
    return rules != nullptr && rules->has_plain_pointers;
}

// A meaning with the type parameters of a generic type replaced by the arguments that a GENERIC gives them.
Meaning Evaluator::substituted(const Meaning& meaning, const Place& arguments) {
    if (arguments.file == NONE) {
        return meaning;
    }
    const syntax::Syntax& syntax = catalog_.syntax(arguments.file);
    const std::span<const syntax::ExpressionId> given = syntax.list(syntax.expressions[arguments.expression].b);
    Meaning found;
    for (const Entity& entity : meaning) {
        const bool is_value = entity.what == What::PARAMETRIC;
        if (!is_value && entity.what != What::PARAMETER) {
            add_once(found, entity);
            continue;
        }
        const std::uint32_t number = catalog_.syntax(entity.at.file).expressions[entity.at.expression].b;
        if (number < given.size()) {
            const Meaning argument = values(arguments.file, given[number]);
            add_once(found, is_value ? instances(argument) : argument);
        } else {
            add_once(found, entity);
        }
    }
    return found;
}

// A generic type of the repository keeps its arguments.
Meaning Evaluator::generic(FileId file, const syntax::Expression& expression, const Place& place) {
    Meaning found;
    for (Entity type : values(file, expression.a)) {
        if (type.what == What::SYMBOL) {
            type.at = place;
        }
        add_once(found, type);
    }
    return found;
}

}  // namespace host::resolve
