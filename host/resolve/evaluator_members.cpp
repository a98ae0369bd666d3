// Members of types, values, namespaces and modules.
#include "host/resolve/definitions.h"
#include "host/resolve/evaluator.h"

#include <algorithm>
#include <utility>

namespace host::resolve {

namespace {

using syntax::Kind;
using syntax::Operation;
using What = Entity::What;

// What nobody writes: more bases and pointers on the way to a member.
constexpr std::size_t MOST_TYPES_ASKED = 300;

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
            MemberSearch search{.name = name, .file = catalog_.file_of(type)};
            add_members_of_bases(type, search, found);
        }
    } else {
        found = members(evaluate(file, member.a), name);
    }
    return chosen(found, static_cast<syntax::Space>(member.b), *rules);
}

// A namespace is declared in many files, and all its declarations have the same members: one of them is asked.
Meaning Evaluator::without_repeated_namespaces(const Meaning& meaning) const {
    Meaning kept;
    Container last = NONE;  // the namespace just before
    for (const Entity& entity : meaning) {
        const bool is_namespace =
            entity.what == What::SYMBOL && catalog_.declaration(entity.id).kind == Kind::NAMESPACE;
        const Container container = is_namespace ? catalog_.container_of(entity.id) : NONE;
        if (container == NONE || container != last) {
            kept.push_back(entity);
        }
        last = container;
    }
    return kept;
}

Meaning Evaluator::members(const Meaning& of, Name name) {
    Meaning found;
    for (const Entity& entity : values(without_repeated_namespaces(of))) {
        MemberSearch search{.name = name};
        add_members(entity, search, found);
    }
    if (std::ranges::all_of(found, is_foreign)) {
        Meaning beside = members_beside_wholes(of, name);
        return beside.empty() ? found : beside;
    }
    std::erase_if(found, is_foreign);  // what is foreign among several says nothing of the others
    return found;
}

// What a module exports beside one of these, which it exports as a whole: `module.exports = A`, `module.exports.b = 1`.
Meaning Evaluator::members_beside_wholes(const Meaning& of, Name name) {
    Meaning found;
    for (const Entity& entity : of) {
        if (entity.what == What::SYMBOL) {
            const Container module = catalog_.module_of(catalog_.file_of(entity.id));
            const Name whole = name_of_whole(module);
            const Meaning wholes = exported(module, whole);
            if (whole != name && std::ranges::find(wholes, entity) != wholes.end()) {
                add_once(found, own_exports(module, name));
            }
        }
    }
    return found;
}

// Of members of a type and of its instances that have one name those of one kind, where a type may have both; else all.
Meaning Evaluator::of_kind(const Meaning& members, Symbol type, bool is_static) const {
    const LanguageRules* const rules = languages_.rules(catalog_.file_of(type));
    Meaning wanted;
    for (const Entity& member : members) {
        if (member.what == What::SYMBOL && catalog_.declaration(member.id).is_static == is_static) {
            wanted.push_back(member);
        }
    }
    return wanted.empty() || rules == nullptr || !rules->merges_declarations ? members : wanted;
}

void Evaluator::add_members(const Entity& of, MemberSearch& search, Meaning& found) {
    if (++search.steps > MOST_TYPES_ASKED) {
        return;
    }
    switch (of.what) {
    case What::FOREIGN:
        add_once(found, of);
        break;
    case What::MODULE:
        add_once(found, exported(of.id, search.name));
        break;
    case What::INSTANCE: {
        Meaning members;
        add_members_of_type(of.id, of.at, search, members);
        add_once(found, of_kind(members, of.id, false));
        break;
    }
    case What::SYMBOL:
        if (catalog_.declaration(of.id).kind == Kind::TYPE) {
            Meaning members;
            add_members_of_type(of.id, of.at, search, members);
            add_once(found, of_kind(members, of.id, true));
        } else if (catalog_.declaration(of.id).kind == Kind::NAMESPACE) {
            add_once(found, exported(catalog_.container_of(of.id), search.name));
        }
        break;
    case What::STRUCTURE:
    case What::STRUCTURED: {
        const syntax::Expression& structure = catalog_.syntax(of.at.file).expressions[of.at.expression];
        const bool is_pointer = structure.operation == Operation::POINTER && !has_plain_pointers(of.at.file);
        if (is_pointer || structure.operation == Operation::TYPE_OF) {
            for (const Entity& target : instances(values(of.at.file, structure.a))) {
                add_members(target, search, found);
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
            add_members(bound, search, found);
        }
        break;
    }
    }
}

// Adds what a type has by this name: itself, else the first of its bases that has it. Returns whether any has.
bool Evaluator::add_members_of_type(Symbol type, const Place& arguments, MemberSearch& search, Meaning& found) {
    if (++search.steps > MOST_TYPES_ASKED || !search.types.insert(type).second) {
        return false;
    }
    search.file = search.file == NONE ? catalog_.file_of(type) : search.file;
    std::vector<Symbol> own;
    for (const Symbol symbol : catalog_.members(catalog_.container_of(type), search.name)) {
        const syntax::Declaration& declaration = catalog_.declaration(symbol);
        const bool is_inherited = !declaration.is_private || catalog_.file_of(symbol) == search.file;
        if (declaration.kind != Kind::CONSTRUCTOR && is_inherited) {
            own.push_back(symbol);
        }
    }
    const auto is_implicit = [this](Symbol symbol) { return catalog_.declaration(symbol).is_implicit; };
    if (!own.empty() && std::ranges::all_of(own, is_implicit)) {
        Meaning inherited;
        MemberSearch among_bases = search;
        add_members_of_bases(type, among_bases, inherited);
        search.steps = among_bases.steps;
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
    const bool is_function = !own.empty() && catalog_.declaration(own.front()).kind == Kind::FUNCTION;
    if (own.empty() || (is_function && has_overloads(type))) {
        return add_members_of_bases(type, search, found) || !own.empty();
    }
    return true;
}

// Of several bases that have it the first counts, but all have overloads: up to one from elsewhere, which may have any.
bool Evaluator::add_members_of_bases(Symbol type, MemberSearch& search, Meaning& found) {
    if (const LanguageRules* const rules = languages_.rules(catalog_.file_of(type));
        rules != nullptr && rules->has_nearest_members) {
        return add_nearest_members(type, search, found);
    }
    bool has_any = false;
    for (const Entity& base : bases_of(type)) {
        const std::size_t before = found.size();
        if (base.what == What::SYMBOL) {
            has_any = add_members_of_type(base.id, base.at, search, found) || has_any;
        } else {
            add_members(base, search, found);
            has_any = has_any || found.size() > before;
        }
        const bool is_foreign = found.size() > before && found.back().what == What::FOREIGN;
        if (has_any && (is_foreign || !has_overloads(type))) {
            break;
        }
    }
    return has_any;
}

// Of embedded types those count that are the fewest steps away, whatever their order.
bool Evaluator::add_nearest_members(Symbol type, MemberSearch& search, Meaning& found) {
    Meaning nearest;
    for (Meaning level = bases_of(type), below; nearest.empty() && !level.empty(); level = std::exchange(below, {})) {
        for (const Entity& base : level) {
            if (base.what != What::SYMBOL) {
                add_members(base, search, nearest);
            } else if (++search.steps <= MOST_TYPES_ASKED && search.types.insert(base.id).second) {
                for (const Symbol symbol : catalog_.members(catalog_.container_of(base.id), search.name)) {
                    add_once(nearest, Entity{.what = What::SYMBOL, .id = symbol, .at = base.at});
                }
                add_once(below, bases_of(base.id));
            }
        }
    }
    add_once(found, nearest);
    return !nearest.empty();
}

bool Evaluator::has_overloads(Symbol type) const {
    const LanguageRules* const rules = languages_.rules(catalog_.file_of(type));
    return rules != nullptr && rules->has_overloads;
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
    const bool nests = languages_.rules(file) != nullptr && languages_.rules(file)->nests_owned_types;
    const auto is_type = [&](Symbol each) {
        const syntax::Declaration& stated = catalog_.declaration(each);
        return stated.kind == Kind::TYPE && (nests || stated.owner == syntax::UNKNOWN);  // not a part of one
    };
    while (symbol != NONE && !is_type(symbol)) {
        symbol = catalog_.around(symbol);
    }
    return symbol;
}

}  // namespace host::resolve
