// Members of types, values, namespaces and modules.
#include "host/resolve/definitions.h"
#include "host/resolve/evaluator.h"

#include <algorithm>

namespace host::resolve {

namespace {

using syntax::Kind;
using syntax::Operation;
using What = Entity::What;

constexpr std::size_t MOST_BASES_DEEP = 30;

}  // namespace

Meaning Evaluator::member(FileId file, const syntax::Expression& member) {
    const LanguageRules* const rules = languages_.rules(file);
    if (rules == nullptr) {
        return {};
    }
    const Name name = catalog_.name(file, member.name);
    const syntax::Expression& of = catalog_.syntax(file).expressions[member.a];
    Meaning found;
    if (of.operation == Operation::SUPER) {
        if (const Symbol type = enclosing_type(file, of.a); type != NONE) {
            add_members_of_bases(type, name, 0, found);
        }
    } else {
        found = members(evaluate(file, member.a), name);
    }
    return chosen(found, static_cast<syntax::Space>(member.b), *rules);
}

Meaning Evaluator::members(const Meaning& of, Name name) {
    Meaning found;
    for (const Entity& entity : values(of)) {
        add_members(entity, name, 0, found);
    }
    // What is foreign among several says nothing of the others.
    if (std::ranges::any_of(found, [](const Entity& entity) { return entity.what != What::FOREIGN; })) {
        std::erase_if(found, [](const Entity& entity) { return entity.what == What::FOREIGN; });
    }
    return found;
}

// `depth` counts the types that stand for one another: a type parameter may be its own bound.
void Evaluator::add_members(const Entity& of, Name name, std::size_t depth, Meaning& found) {
    if (depth > MOST_BASES_DEEP) {
        return;
    }
    switch (of.what) {
    case What::FOREIGN:
        add_once(found, of);
        break;
    case What::MODULE:
        add_once(found, exported(of.id, name));
        break;
    case What::INSTANCE:
        add_members_of_type(of.id, of.at, name, depth, found);
        break;
    case What::SYMBOL:
        if (catalog_.declaration(of.id).kind == Kind::TYPE) {
            add_members_of_type(of.id, of.at, name, depth, found);
        } else if (catalog_.declaration(of.id).kind == Kind::NAMESPACE) {
            add_once(found, exported(catalog_.container_of(of.id), name));
        }
        break;
    case What::STRUCTURE:
    case What::STRUCTURED: {
        const syntax::Expression& structure = catalog_.syntax(of.at.file).expressions[of.at.expression];
        if (structure.operation == Operation::POINTER || structure.operation == Operation::TYPE_OF) {
            for (const Entity& target : instances(values(of.at.file, structure.a))) {
                add_members(target, name, depth + 1, found);
            }
        } else {
            add_once(found, Entity{.what = What::FOREIGN});  // of a list, a map, a function
        }
        break;
    }
    case What::PARAMETER:
    case What::PARAMETRIC: {
        const syntax::Expression& parameter = catalog_.syntax(of.at.file).expressions[of.at.expression];
        for (const Entity& bound : instances(values(of.at.file, parameter.a))) {
            add_members(bound, name, depth + 1, found);
        }
        break;
    }
    }
}

// Adds what a type has by this name: itself, else the first of its bases that has it. Returns whether any has.
bool Evaluator::add_members_of_type(Symbol type, const Place& arguments, Name name, std::size_t depth, Meaning& found) {
    if (depth > MOST_BASES_DEEP) {
        return false;
    }
    std::vector<Symbol> own;
    for (const Symbol symbol : catalog_.members(catalog_.container_of(type), name)) {
        if (catalog_.declaration(symbol).kind != Kind::CONSTRUCTOR) {
            own.push_back(symbol);
        }
    }
    const auto is_implicit = [this](Symbol symbol) { return catalog_.declaration(symbol).is_implicit; };
    if (!own.empty() && std::ranges::all_of(own, is_implicit)) {
        Meaning inherited;
        add_members_of_bases(type, name, depth, inherited);
        if (std::ranges::any_of(inherited, [&](const Entity& entity) {
                return entity.what == What::SYMBOL && !is_implicit(entity.id);
            })) {
            add_once(found, inherited);
            return true;
        }
    }
    for (const Symbol symbol : definitions(catalog_, own)) {
        add_once(found, Entity{.what = What::SYMBOL, .id = symbol, .at = arguments});
    }
    // Methods of the bases are overloads of those that the type has itself.
    const LanguageRules* const rules = languages_.rules(catalog_.file_of(type));
    const bool has_overloads = rules != nullptr && rules->has_overloads;
    const bool is_function = !own.empty() && catalog_.declaration(own.front()).kind == Kind::FUNCTION;
    if (own.empty() || (has_overloads && is_function)) {
        return add_members_of_bases(type, name, depth, found) || !own.empty();
    }
    return true;
}

bool Evaluator::add_members_of_bases(Symbol type, Name name, std::size_t depth, Meaning& found) {
    const Meaning bases = bases_of(type);
    return std::ranges::any_of(bases, [&](const Entity& base) {
        if (base.what == What::SYMBOL) {
            return base.id != type && add_members_of_type(base.id, base.at, name, depth + 1, found);
        }
        const std::size_t before = found.size();
        add_members(base, name, depth + 1, found);
        return found.size() > before;
    });
}

// The types from which a type has members that it does not declare. Pointers to types count as those.
Meaning Evaluator::bases_of(Symbol type) {
    const FileId file = catalog_.file_of(type);
    const syntax::Declaration& declaration = catalog_.declaration(type);
    Meaning bases;
    const auto add = [&](FileId of, syntax::ExpressionId expression) {
        for (const Entity& base : values(of, expression)) {
            const bool is_structure = base.what == What::STRUCTURE || base.what == What::STRUCTURED;
            const bool is_instance = base.what == What::INSTANCE;
            if (is_structure || is_instance || base.what == What::SYMBOL) {
                add_once(bases, is_instance ? Entity{.what = What::SYMBOL, .id = base.id, .at = base.at} : base);
            }
        }
    };
    for (const syntax::ExpressionId base : catalog_.syntax(file).list(declaration.bases)) {
        add(file, base);
    }
    if (declaration.type != syntax::UNKNOWN) {  // what it is made of: `type Celsius Degrees`
        add(file, declaration.type);
    }
    if (const auto further = further_bases_.find(type); further != further_bases_.end()) {
        for (const Place& place : further->second) {
            add(place.file, place.expression);
        }
    }
    return bases;
}

Symbol Evaluator::enclosing_type(FileId file, syntax::DeclarationId declaration) const {
    Symbol symbol = declaration == syntax::NO_DECLARATION ? NONE : catalog_.symbol(file, declaration);
    const auto is_type = [&](Symbol each) {
        const syntax::Declaration& stated = catalog_.declaration(each);
        return stated.kind == Kind::TYPE && stated.owner == syntax::UNKNOWN;  // not a part of one
    };
    while (symbol != NONE && !is_type(symbol)) {
        symbol = catalog_.around(symbol);
    }
    return symbol;
}

}  // namespace host::resolve
