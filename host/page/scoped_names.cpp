#include "host/page/scoped_names.h"

#include <string_view>
#include <utility>

namespace host {

namespace {

using models::Text;
using storage::ScopeSymbol;

// "src.a.ts.Subject" for Subject.next; empty for what has nothing around it.
std::string_view whole_name_of_scope(const ScopeSymbol& symbol) {
    std::string_view whole = symbol.fqn;
    const std::string_view name = symbol.name;
    if (whole.size() < name.size() + 2 || !whole.ends_with(name) || whole[whole.size() - name.size() - 1] != '.') {
        return {};
    }
    whole.remove_suffix(name.size() + 1);
    return whole;
}

}  // namespace

ScopedNames::ScopedNames(const wiki::scope::ScopeFacts& facts, std::span<const ScopeSymbol* const> shown) {
    models::OrderedMap<Text, int> bearers;
    for (const ScopeSymbol* const symbol : shown) {
        bearers[symbol->name] = 0;
    }
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (bearers.contains(symbol.name)) {
            ++bearers[symbol.name];
        }
    }
    std::unordered_multimap<std::string_view, const ScopeSymbol*> members;  // by the whole name of their scope
    for (const ScopeSymbol* const symbol : shown) {
        if (bearers.get(symbol->name, 0) > 1) {
            members.emplace(whole_name_of_scope(*symbol), symbol);
        }
    }
    for (const ScopeSymbol& scope : facts.symbols) {
        const auto [first, last] = members.equal_range(scope.fqn);
        for (auto member = first; member != last; ++member) {
            if (member->second->path == scope.path && !scope.name.empty()) {
                scoped_[member->second->id] = std::string(scope.name) + "." + std::string(member->second->name);
            }
        }
    }
}

std::string ScopedNames::of(const ScopeSymbol& symbol) const {
    const auto scoped = scoped_.find(symbol.id);
    return scoped == scoped_.end() ? std::string(symbol.name) : scoped->second;
}

}  // namespace host
