#include "host/resolve/possible_targets.h"

#include <algorithm>
#include <ranges>

namespace host::resolve {

using syntax::Kind;
using syntax::Operation;
using syntax::Space;

namespace {

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
    }
    std::ranges::sort(in_namespaces_);
}

std::vector<Symbol> PossibleTargets::of(FileId file, const syntax::Mention& mention) const {
    constexpr std::size_t MOST = 16;
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
        if (found.size() <= MOST && (!is_member || catalog_.declaration(symbol).kind == Kind::MACRO) &&
            may_mean(file, static_cast<Space>(expression.b), symbol)) {
            found.push_back(symbol);
        }
    };
    std::ranges::for_each(catalog_.members(catalog_.module_of(file), name), add);
    auto in_namespace = std::ranges::lower_bound(in_namespaces_, name, {}, &std::pair<Name, Symbol>::first);
    for (; in_namespace != in_namespaces_.end() && in_namespace->first == name; ++in_namespace) {
        add(in_namespace->second);
    }
    if (found.size() > MOST) {
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
