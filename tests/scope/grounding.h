// Everything that the component computes from the facts of a page, as one value.
#pragma once

#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/ranking.h"
#include "workers/wiki/scope/render.h"

#include <string>
#include <tuple>
#include <vector>

namespace wiki::scope {

/// The results of all pure functions for one page, which compare as a whole.
inline auto grounding_of(const ScopeFacts& facts) {
    const FanIn fan_in = production_fan_in(facts);
    const RankedFiles ranked = ranked_by_file(facts, fan_in);
    const std::vector<const ScopeSymbol*> selection = select_with_quota(ranked, fan_in, 24, 2, 0.4);
    std::vector<NamedPath> names;
    for (const ScopeSymbol* symbol : selection) {
        names.push_back({symbol->name, symbol->path});
    }
    const std::vector<std::string> missing{"missing.ts"};
    return std::tuple(fan_in.outside, fan_in.inside, fan_in.entry, file_users(facts), ranked, file_seeds(facts, fan_in),
                      selection, pick_spread(names, 6, 2), neighbours(facts, 12), name_match_counts(facts),
                      render_file_cards(facts, fan_in, "## Files", missing),
                      render_consumers(facts, fan_in, "## Consumers"));
}

using Grounding = decltype(grounding_of(std::declval<const ScopeFacts&>()));

}  // namespace wiki::scope
