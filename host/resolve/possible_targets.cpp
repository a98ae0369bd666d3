#include "host/resolve/possible_targets.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <ranges>
#include <span>

namespace host::resolve {

using syntax::Kind;
using syntax::Operation;
using syntax::Space;

namespace {

constexpr std::size_t MOST_OF_A_NAME = 16;  // more declarations of a name tell nothing

// Whether an expression is a member of a value: `a.f`, and not `n::f`. A macro may bear its name.
bool is_member_of_value(const syntax::Syntax& syntax, const syntax::Expression& expression) {
    if (expression.operation != Operation::MEMBER) {
        return false;
    }
    const syntax::Expression& of = syntax.expressions[expression.a];
    const bool may_be_qualifier =
        of.operation == Operation::NAME || of.operation == Operation::GLOBAL || of.operation == Operation::MEMBER;
    return !may_be_qualifier || static_cast<Space>(of.b) != Space::QUALIFIER;
}

}  // namespace

PossibleTargets::PossibleTargets(const Catalog& catalog, const Languages& languages)
    : catalog_(catalog), languages_(languages) {
    for (Symbol symbol = 0; symbol < catalog.symbols(); ++symbol) {
        const LanguageRules* const rules = languages.rules(catalog.file_of(symbol));
        const Symbol around = catalog.around(symbol);
        if (rules != nullptr && rules->has_macros && around != NONE &&
            catalog.declaration(around).kind == Kind::NAMESPACE && catalog.home_of(symbol) != NONE) {
            in_namespaces_.emplace_back(catalog.name_of(symbol), symbol);
        }
        if (rules != nullptr && rules->has_macros && around == NONE) {
            note_kind(symbol);
        }
    }
    std::ranges::sort(in_namespaces_);
}

void PossibleTargets::note_kind(Symbol symbol) {
    const syntax::Declaration& declaration = catalog_.declaration(symbol);
    const Name name = catalog_.name_of(symbol);
    kinds_.resize(std::max<std::size_t>(kinds_.size(), std::size_t{name} + 1));
    Kinds& kinds = kinds_[name];
    const bool is_linked = !declaration.is_private && !declaration.is_local;
    kinds.has_macros = kinds.has_macros || (kinds.has_macro && declaration.kind == Kind::MACRO);
    kinds.has_macro = kinds.has_macro || declaration.kind == Kind::MACRO;
    kinds.has_value = kinds.has_value || (is_linked && declaration.kind == Kind::VALUE);
    kinds.has_function = kinds.has_function || (is_linked && declaration.kind == Kind::FUNCTION);
}

const PossibleTargets::Kinds& PossibleTargets::kinds(Symbol symbol) const {
    static constexpr Kinds NONE_OF_ANY;
    const Name name = catalog_.name_of(symbol);
    return name < kinds_.size() && catalog_.around(symbol) == NONE ? kinds_[name] : NONE_OF_ANY;
}

// Of one name and home, unless they are too many.
template <class IsWanted>
std::vector<Symbol> PossibleTargets::others(Symbol symbol, const IsWanted& is_wanted) const {
    const std::span<const Symbol> all = catalog_.members(catalog_.home_of(symbol), catalog_.name_of(symbol));
    std::vector<Symbol> found;
    if (all.size() <= MOST_OF_A_NAME) {
        std::ranges::copy_if(all, std::back_inserter(found),
                             [&](Symbol other) { return other != symbol && is_wanted(other); });
    }
    return found;
}

std::vector<Symbol> PossibleTargets::linked_with(Symbol symbol) const {
    const syntax::Declaration& declaration = catalog_.declaration(symbol);
    const Kinds& of_name = kinds(symbol);
    const bool is_other = declaration.kind == Kind::VALUE && of_name.has_function;
    const bool is_linked = declaration.kind == Kind::VALUE || declaration.kind == Kind::FUNCTION;
    if (declaration.is_private || !is_linked || (declaration.is_definition && !is_other)) {
        return {};
    }
    return others(symbol, [&](Symbol other) {
        const syntax::Declaration& stated = catalog_.declaration(other);
        return !stated.is_private && catalog_.file_of(other) != catalog_.file_of(symbol) &&
               (stated.kind == Kind::VALUE || stated.kind == Kind::FUNCTION);
    });
}

std::vector<Symbol> PossibleTargets::macros_over(Symbol declared) const {
    const FileId file = catalog_.file_of(declared);
    const syntax::Declaration& declaration = catalog_.declaration(declared);
    if (!kinds(declared).has_macro || declaration.kind == Kind::MACRO || declaration.is_local) {
        return {};
    }
    return others(declared, [&](Symbol other) {
        const FileId of = catalog_.file_of(other);
        return catalog_.declaration(other).kind == Kind::MACRO &&
               (of == file || languages_.modules(file).sees(file, of));
    });
}

std::vector<Symbol> PossibleTargets::macros_after(FileId file, Symbol macro) const {
    if (!kinds(macro).has_macros || catalog_.declaration(macro).kind != Kind::MACRO) {
        return {};
    }
    return others(macro, [&](Symbol other) {
        const FileId of = catalog_.file_of(other);
        return catalog_.declaration(other).kind == Kind::MACRO && of != file && languages_.modules(file).sees(of, file);
    });
}

std::vector<Symbol> PossibleTargets::of(FileId file, const syntax::Mention& mention) const {
    const syntax::Syntax& syntax = catalog_.syntax(file);
    const syntax::Expression& expression = syntax.expressions[mention.expression];
    const LanguageRules* const rules = languages_.rules(file);
    if (rules == nullptr || !rules->has_macros || expression.name == 0) {
        return {};
    }
    const Name name = catalog_.name(file, expression.name);
    const bool is_member = is_member_of_value(syntax, expression);
    std::vector<Symbol> found;
    const auto add = [&](Symbol symbol) {
        if (found.size() <= MOST_OF_A_NAME && (!is_member || catalog_.declaration(symbol).kind == Kind::MACRO) &&
            may_mean(file, static_cast<Space>(expression.b), symbol)) {
            found.push_back(symbol);
        }
    };
    std::ranges::for_each(catalog_.members(catalog_.module_of(file), name), add);
    auto in_namespace = std::ranges::lower_bound(in_namespaces_, name, {}, &std::pair<Name, Symbol>::first);
    for (; in_namespace != in_namespaces_.end() && in_namespace->first == name; ++in_namespace) {
        add(in_namespace->second);
    }
    if (found.size() > MOST_OF_A_NAME) {
        return {};
    }
    std::ranges::sort(found);
    return found;
}

bool PossibleTargets::may_mean(FileId file, Space space, Symbol symbol) const {
    const syntax::Declaration& declaration = catalog_.declaration(symbol);
    const FileId of = catalog_.file_of(symbol);
    const bool is_value = declaration.kind == Kind::FUNCTION || declaration.kind == Kind::VALUE;
    const ModuleRules& modules = languages_.modules(file);
    const bool may_see = modules.sees(file, of) || modules.sees(of, file) ||
                         (modules.is_included(of) && (modules.is_included(file) || modules.is_open(file)));
    return of != file && !(is_value && (space == Space::TYPE || space == Space::TAG)) &&
           ((is_value && !declaration.is_private) || may_see);
}

}  // namespace host::resolve
