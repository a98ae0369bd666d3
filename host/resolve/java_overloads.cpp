#include "host/resolve/java_overloads.h"

#include "host/resolve/evaluator.h"
#include "host/resolve/java_library.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host::resolve {

namespace {

using syntax::Declaration;
using syntax::Expression;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;
using What = Entity::What;

// How many types may stand for one another.
constexpr std::size_t LONGEST_CHAIN_OF_TYPES = 20;

// What nobody writes: more methods of one name, more bases of a type.
constexpr std::size_t MOST_METHODS = 100;
constexpr std::size_t MOST_BASES = 100;

}  // namespace

Meaning JavaOverloads::taking(const Meaning& functions, FileId file, std::span<const ExpressionId> arguments) const {
    Meaning taking;
    const auto is_method = [&](const Entity& entity) {
        return entity.what == What::SYMBOL && catalog_.declaration(entity.id).kind == Kind::FUNCTION;
    };
    std::ranges::copy_if(functions, std::back_inserter(taking), [&](const Entity& each) { return !is_method(each); });
    Meaning methods;
    std::ranges::copy_if(functions, std::back_inserter(methods), is_method);
    if (methods.size() > MOST_METHODS) {
        return functions;
    }
    std::vector<Type> types;
    if (methods.size() > 1) {
        for (const ExpressionId argument : arguments) {
            types.push_back(type_of_value({file, argument}));
        }
    } else {
        types.resize(arguments.size());  // the number is enough
    }
    for (const Candidate& each : candidates(methods, types)) {
        taking.push_back(each.function);
    }
    return taking;
}

// Of all that may take the arguments the one that a compiler chooses, if the types tell.
std::vector<JavaOverloads::Candidate> JavaOverloads::candidates(const Meaning& functions,
                                                                const std::vector<Type>& arguments) const {
    std::vector<Candidate> fitting;
    for (const Entity& function : functions) {
        Candidate each = candidate(function, arguments);
        const bool is_fitting =
            each.parameters.size() == arguments.size() && std::ranges::find(each.fits, Fit::NEVER) == each.fits.end();
        const bool is_overridden =
            std::ranges::any_of(fitting, [&](const Candidate& method) { return overrides(method, each); });
        if (is_fitting && !is_overridden) {
            fitting.push_back(std::move(each));
        }
    }
    if (fitting.size() <= 1) {
        return fitting;
    }
    const auto is_the_same = [](const Candidate& each) {
        return !each.is_variable && std::ranges::all_of(each.fits, [](Fit fit) { return fit == Fit::SAME; });
    };
    if (std::ranges::any_of(fitting, is_the_same)) {
        std::erase_if(fitting, [&](const Candidate& each) { return !is_the_same(each); });
        return fitting;
    }
    // Where all have the same parameter, it does not matter what is known of the argument.
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const Type& first = fitting.front().parameters[at];
        const bool is_one =
            first.what != Type::What::UNKNOWN &&
            std::ranges::all_of(fitting, [&](const Candidate& each) { return each.parameters[at] == first; });
        const auto is_unknown = [&](const Candidate& each) { return each.fits[at] == Fit::UNKNOWN; };
        if (!is_one && std::ranges::any_of(fitting, is_unknown)) {
            return fitting;
        }
    }
    // What needs neither boxes nor a variable number of arguments comes first.
    const auto phase = [](const Candidate& each) {
        return each.is_variable ? 2 : std::ranges::find(each.fits, Fit::BOXED) != each.fits.end() ? 1 : 0;
    };
    const int first_phase = phase(*std::ranges::min_element(fitting, {}, phase));
    std::erase_if(fitting, [&](const Candidate& each) { return phase(each) != first_phase; });
    std::vector<Candidate> best;
    std::ranges::copy_if(fitting, std::back_inserter(best), [&](const Candidate& one) {
        return std::ranges::all_of(fitting, [&](const Candidate& other) { return is_more_specific(one, other); });
    });
    return best.empty() ? fitting : best;
}

// Whether a method of a class stands for one of a base that has the same parameters.
bool JavaOverloads::overrides(const Candidate& method, const Candidate& inherited) const {
    const auto class_of = [&](const Candidate& each) {
        return Type{.what = Type::What::DECLARED, .id = catalog_.around(each.function.id)};
    };
    const Type own = class_of(method);
    const Type base = class_of(inherited);
    return method.parameters == inherited.parameters && method.is_variable == inherited.is_variable &&
           std::ranges::find(inherited.parameters, Type::What::UNKNOWN, &Type::what) == inherited.parameters.end() &&
           own.id != NONE && base.id != NONE && fit_declared(own, base) == Fit::SUBTYPE;
}

// A method with as many parameters as there are arguments; with fewer or more when it cannot take so many.
JavaOverloads::Candidate JavaOverloads::candidate(const Entity& function, const std::vector<Type>& arguments) const {
    const FileId file = catalog_.file_of(function.id);
    const Declaration& declaration = catalog_.declaration(function.id);
    const std::span<const ExpressionId> stated = catalog_.syntax(file).list(declaration.parameters);
    const bool is_variable = declaration.most_arguments == Declaration::ANY_NUMBER;
    Candidate candidate{.function = function, .parameters = {}, .fits = {}};
    if (arguments.size() < declaration.least_arguments || (!is_variable && arguments.size() != stated.size())) {
        candidate.parameters.resize(arguments.size() + 1);
        return candidate;
    }
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        Type parameter = type_at({file, stated[std::min(at, stated.size() - 1)]});
        if (is_variable && at + 1 >= stated.size() &&
            (arguments.size() != stated.size() || !takes_array(parameter, arguments, at))) {
            candidate.is_variable = true;
            parameter.arrays -= parameter.arrays > 0 ? 1 : 0;
        }
        candidate.parameters.push_back(parameter);
        candidate.fits.push_back(fit(arguments[at], parameter));
    }
    candidate.is_variable = candidate.is_variable || (is_variable && arguments.size() < stated.size());
    return candidate;
}

// Whether an argument is the array itself that a variable number of arguments makes.
bool JavaOverloads::takes_array(const Type& array, const std::vector<Type>& arguments, std::size_t at) const {
    const Fit whole = fit(arguments[at], array);
    return whole == Fit::SAME || whole == Fit::SUBTYPE;
}

bool JavaOverloads::is_more_specific(const Candidate& one, const Candidate& other) const {
    for (std::size_t at = 0; at < one.parameters.size(); ++at) {
        const Fit each = fit(one.parameters[at], other.parameters[at]);
        if (each != Fit::SAME && each != Fit::SUBTYPE) {
            return false;
        }
    }
    return true;
}

std::string_view JavaOverloads::name_of(const Type& type) const {
    return type.what == Type::What::NAMED && type.id != NONE ? catalog_.spelling(type.id) : std::string_view();
}

JavaOverloads::Type JavaOverloads::type_at(const Place& place, std::size_t depth) const {
    const syntax::Syntax& syntax = catalog_.syntax(place.file);
    const Expression& expression = syntax.expressions[place.expression];
    if (depth > LONGEST_CHAIN_OF_TYPES) {
        return {};
    }
    const auto named = [&](syntax::NameId name) {
        return name == 0 ? Type() : Type{.what = Type::What::NAMED, .id = catalog_.name(place.file, name)};
    };
    switch (expression.operation) {
    case Operation::FOREIGN:
        return named(expression.name);
    case Operation::LIST:
    case Operation::MAP:
        if (syntax.name(expression.name) == "[]") {
            Type element = type_at({place.file, expression.a}, depth + 1);
            ++element.arrays;
            return element;
        }
        return named(expression.name);
    case Operation::GENERIC:
    case Operation::LOCAL:
        return type_at({place.file, expression.a}, depth + 1);
    case Operation::NAME:
    case Operation::MEMBER:
    case Operation::IMPORT: {
        const Meaning types = evaluator_.values(evaluator_.evaluate(place));
        if (types.size() == 1 && types.front().what == What::SYMBOL) {
            return {.what = Type::What::DECLARED, .id = types.front().id};
        }
        const bool is_foreign =
            std::ranges::all_of(types, [](const Entity& each) { return each.what == What::FOREIGN; });
        const bool is_import = expression.operation == Operation::IMPORT;
        return is_foreign ? named(is_import ? syntax.imports[expression.a].original : expression.name) : Type();
    }
    default:
        return {};
    }
}

JavaOverloads::Type JavaOverloads::type_of_value(const Place& place, std::size_t depth) const {
    const syntax::Syntax& syntax = catalog_.syntax(place.file);
    const Expression& expression = syntax.expressions[place.expression];
    if (depth > LONGEST_CHAIN_OF_TYPES) {
        return {};
    }
    switch (expression.operation) {
    case Operation::INSTANCE:
        return type_at({place.file, expression.a}, depth + 1);
    case Operation::LOCAL:
        return type_of_value({place.file, expression.a}, depth + 1);
    case Operation::ELEMENT: {
        Type array = type_of_value({place.file, expression.a}, depth + 1);
        if (array.arrays == 0) {
            break;
        }
        --array.arrays;
        return array;
    }
    case Operation::ONE_OF: {
        const std::span<const ExpressionId> branches = syntax.list(expression.a);
        const Type first = type_of_value({place.file, branches.front()}, depth + 1);
        const bool is_one = std::ranges::all_of(branches.subspan(1), [&](ExpressionId branch) {
            return type_of_value({place.file, branch}, depth + 1) == first;
        });
        return is_one ? first : Type();
    }
    default:
        break;
    }
    // The type that a declaration states says more than what it means in the repository.
    const bool is_call = expression.operation == Operation::CALL;
    const Meaning found = is_call ? evaluator_.functions_called(place) : evaluator_.evaluate(place);
    return found.size() == 1 ? type_of_entity(found.front(), depth) : Type();
}

JavaOverloads::Type JavaOverloads::type_of_entity(const Entity& entity, std::size_t depth) const {
    switch (entity.what) {
    case What::INSTANCE:
        return {.what = Type::What::DECLARED, .id = entity.id};
    case What::STRUCTURED:
        return type_at(entity.at, depth + 1);
    case What::SYMBOL: {
        const Declaration& declaration = catalog_.declaration(entity.id);
        const Place type{catalog_.file_of(entity.id), declaration.type};
        return declaration.kind == Kind::VALUE      ? type_of_value(type, depth + 1)
               : declaration.kind == Kind::FUNCTION ? type_at(type, depth + 1)
                                                    : Type();
    }
    default:
        return {};
    }
}

JavaOverloads::Fit JavaOverloads::fit(const Type& argument, const Type& parameter) const {
    if (argument.what == Type::What::UNKNOWN || parameter.what == Type::What::UNKNOWN) {
        return Fit::UNKNOWN;
    }
    if (argument == parameter) {
        return Fit::SAME;
    }
    const std::string_view wanted = name_of(parameter);
    const bool is_null = argument.arrays == 0 && name_of(argument) == "null";
    if (is_null) {
        return parameter.arrays == 0 && is_java_primitive(wanted) ? Fit::NEVER : Fit::SUBTYPE;
    }
    if (argument.arrays == 0 && parameter.arrays == 0) {
        return argument.what == Type::What::DECLARED ? fit_declared(argument, parameter)
                                                     : fit_named(argument, parameter);
    }
    if (argument.arrays > 0 && parameter.arrays > 0) {
        Type one = argument;
        Type other = parameter;
        --one.arrays;
        --other.arrays;
        const bool has_primitives = (one.arrays == 0 && is_java_primitive(name_of(one))) ||
                                    (other.arrays == 0 && is_java_primitive(name_of(other)));
        return has_primitives ? Fit::NEVER : fit(one, other);
    }
    const bool is_array_as_object =
        parameter.arrays == 0 && (wanted == "Object" || wanted == "Cloneable" || wanted == "Serializable");
    return is_array_as_object ? Fit::SUBTYPE : Fit::NEVER;
}

// Of an argument whose type the repository does not declare.
JavaOverloads::Fit JavaOverloads::fit_named(const Type& argument, const Type& parameter) const {
    const std::string_view given = name_of(argument);
    const std::string_view wanted = name_of(parameter);
    if (is_java_primitive(given)) {
        const std::string_view box = java_box(given);
        if (is_java_primitive(wanted)) {
            return java_widens(given, wanted) ? Fit::SUBTYPE : Fit::NEVER;
        }
        return wanted == box || java_final_inherits(box, wanted) ? Fit::BOXED : Fit::NEVER;
    }
    if (is_java_primitive(wanted)) {
        const bool is_box = java_box(wanted) == given;
        return is_box ? Fit::BOXED : is_java_final(given) && given != "String" ? Fit::UNKNOWN : Fit::NEVER;
    }
    if (wanted == "Object") {
        return Fit::SUBTYPE;
    }
    if (is_java_final(given)) {
        return java_final_inherits(given, wanted) ? Fit::SUBTYPE : Fit::NEVER;
    }
    return is_java_final(wanted) ? Fit::NEVER : Fit::UNKNOWN;
}

// Of an argument whose type the repository declares.
JavaOverloads::Fit JavaOverloads::fit_declared(const Type& argument, const Type& parameter) const {
    const std::string_view wanted = name_of(parameter);
    if (wanted == "Object") {
        return Fit::SUBTYPE;
    }
    if (is_java_primitive(wanted) || is_java_final(wanted)) {
        return Fit::NEVER;
    }
    std::vector<Symbol> types{argument.id};
    bool has_others = false;
    for (std::size_t at = 0; at < types.size(); ++at) {
        if (types.size() > MOST_BASES) {
            return Fit::UNKNOWN;
        }
        const FileId file = catalog_.file_of(types[at]);
        for (const ExpressionId base : catalog_.syntax(file).list(catalog_.declaration(types[at]).bases)) {
            const Type type = type_at({file, base});
            if (type == parameter) {
                return Fit::SUBTYPE;
            }
            has_others = has_others || type.what != Type::What::DECLARED;
            if (type.what == Type::What::DECLARED && std::ranges::find(types, type.id) == types.end()) {
                types.push_back(type.id);
            }
        }
    }
    return has_others && parameter.what == Type::What::NAMED ? Fit::UNKNOWN : Fit::NEVER;
}

}  // namespace host::resolve
