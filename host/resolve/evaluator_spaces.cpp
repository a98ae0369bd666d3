// Of what a name may mean that which its place asks for: a type, a tag, a value, what stands before a `::`.
#include "host/resolve/evaluator.h"

#include <algorithm>

namespace host::resolve {

namespace {

using syntax::Kind;
using syntax::Space;
using What = Entity::What;

bool is_kind_of_type(Kind kind) {
    return kind == Kind::TYPE || kind == Kind::ALIAS;
}

// Those of certain kinds; what is no declaration counts as a namespace.
template <class IsWanted>
Meaning only(const Catalog& catalog, const Meaning& found, const IsWanted& is_wanted) {
    Meaning wanted;
    for (const Entity& entity : found) {
        const bool is_symbol = entity.what == What::SYMBOL;
        if (is_wanted(entity, is_symbol ? catalog.declaration(entity.id).kind : Kind::NAMESPACE)) {
            wanted.push_back(entity);
        }
    }
    return wanted;
}

}  // namespace

// Whether a build may define a type in place of any of these: of aliases in other branches of an `#if` of its file.
bool Evaluator::is_in_place_of_all(Symbol type, const Meaning& others) const {
    return catalog_.declaration(type).is_definition && std::ranges::all_of(others, [&](const Entity& other) {
               return other.what == What::SYMBOL && catalog_.built(other.id) == syntax::Built::MAYBE &&
                      catalog_.file_of(other.id) == catalog_.file_of(type);
           });
}

// Those that a name in this space binds to: a type binds to types alone, a value rather to a value than to a class.
Meaning Evaluator::chosen(const Meaning& found, Space space, const LanguageRules& rules) const {
    if (rules.has_values_as_types) {  // so that one name is one thing, whatever it is used for
        return found;
    }
    Meaning best;
    switch (space) {
    case Space::TAG:
        return tags(found);
    case Space::TYPE:
        return types(found, rules);
    case Space::VALUE:
        best = only(catalog_, found, [&](const Entity& entity, Kind kind) {
            return is_foreign(entity) || (!is_kind_of_type(kind) && kind != Kind::NAMESPACE);
        });
        return best.empty() ? found : best;
    case Space::QUALIFIER:
        best = only(catalog_, found,
                    [&](const Entity&, Kind kind) { return is_kind_of_type(kind) || kind == Kind::NAMESPACE; });
        return best.empty() && !rules.has_macros ? found : best;
    }
    return found;
}

// A macro may name what a tag stands in for.
Meaning Evaluator::tags(const Meaning& found) const {
    const auto is_substitute = [&](const Entity& entity) {
        return entity.what == What::SYMBOL && catalog_.declaration(entity.id).is_substitute;
    };
    Meaning tags =
        only(catalog_, found, [](const Entity& entity, Kind kind) { return is_foreign(entity) || kind == Kind::TYPE; });
    if (std::ranges::any_of(tags, is_substitute)) {
        add_once(tags, only(catalog_, found, [](const Entity&, Kind kind) { return kind == Kind::MACRO; }));
    }
    return tags;
}

// Where macros are, a plain name means the tag where nothing else has it: in C++.
Meaning Evaluator::types(const Meaning& found, const LanguageRules& rules) const {
    Meaning plain;
    if (rules.has_macros) {
        plain =
            only(catalog_, found, [](const Entity&, Kind kind) { return kind == Kind::ALIAS || kind == Kind::MACRO; });
    }
    if (plain.empty()) {
        return only(catalog_, found,
                    [](const Entity& entity, Kind kind) { return is_foreign(entity) || is_kind_of_type(kind); });
    }
    add_once(plain, only(catalog_, found, [&](const Entity& entity, Kind kind) {
                 return kind == Kind::TYPE && is_in_place_of_all(entity.id, plain);
             }));
    return plain;
}

}  // namespace host::resolve
