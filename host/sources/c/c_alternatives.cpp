#include "host/sources/c/c_alternatives.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <vector>

namespace host::sources {

namespace {

using syntax::Built;
using syntax::Declaration;
using syntax::DeclarationId;
using syntax::Kind;

// Whether several can stand beside each other.
bool is_overload(const Declaration& declaration, bool has_overloads) {
    return has_overloads && (declaration.kind == Kind::FUNCTION || declaration.kind == Kind::CONSTRUCTOR);
}

}  // namespace

void join_alternatives(syntax::Syntax& syntax, bool has_overloads) {
    std::vector<Declaration>& all = syntax.declarations;
    if (std::ranges::none_of(all, [](const Declaration& each) { return each.built == Built::MAYBE; })) {
        return;
    }
    const auto first_of = [&](DeclarationId id) {
        const bool is_joined = id != syntax::NO_DECLARATION && all[id].alternative_of != syntax::NO_DECLARATION;
        return is_joined ? all[id].alternative_of : id;
    };
    std::map<std::tuple<DeclarationId, syntax::ExpressionId, syntax::NameId, Kind, bool>, DeclarationId> first;
    for (DeclarationId id = 0; id < all.size(); ++id) {
        Declaration& each = all[id];
        if (each.name == 0 || each.built == Built::NEVER || each.is_hidden || is_overload(each, has_overloads)) {
            continue;
        }
        const auto [found, is_new] =
            first.try_emplace({first_of(each.parent), each.owner, each.name, each.kind, each.is_definition}, id);
        if (!is_new && each.built == Built::MAYBE) {
            each.alternative_of = found->second;
        }
    }
}

}  // namespace host::sources
