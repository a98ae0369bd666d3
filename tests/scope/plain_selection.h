// The selection once more, as plainly as its rules can be written.
#pragma once

#include "workers/wiki/scope/ranking.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <tuple>
#include <vector>

namespace wiki::scope {

/// What `select_with_quota` promises: block after block goes to the best of those declarations that are next in their
/// files, first as far as each file's floor, then as far as its share, then without end.
inline std::vector<const ScopeSymbol*> plain_selection(const RankedFiles& ranked, const FanIn& fan_in,
                                                       std::int64_t total, std::int64_t floor, double max_share) {
    using Block = std::tuple<std::int64_t, RankKey, Text, const ScopeSymbol*>;  // the first is the place in its file
    const auto by_rank = [](const Block& block) { return std::tie(std::get<1>(block), std::get<2>(block)); };
    const std::int64_t files = std::max<std::int64_t>(1, std::ssize(ranked));
    const auto floor_each = static_cast<double>(std::max<std::int64_t>(1, std::min(floor, total / files)));
    const double share = std::max(floor_each, std::ceil(static_cast<double>(total) * max_share));
    Counter<Text> taken;
    std::vector<Block> blocks;
    for (const double limit : {floor_each, share, std::numeric_limits<double>::infinity()}) {
        while (std::ssize(blocks) < total) {
            std::optional<Block> best;
            for (const auto& [path, declarations] : ranked) {
                const std::int64_t place = taken[path];
                if (place < std::ssize(declarations) && static_cast<double>(place) < limit) {
                    const ScopeSymbol* const symbol = declarations[static_cast<std::size_t>(place)];
                    const Block next(place, rank_key(*symbol, fan_in), path, symbol);
                    best = !best || by_rank(next) < by_rank(*best) ? next : best;
                }
            }
            if (!best) {
                break;
            }
            taken.add(std::get<Text>(*best), 1);
            blocks.push_back(*best);
        }
    }
    std::ranges::sort(blocks);
    std::vector<const ScopeSymbol*> symbols;
    for (const Block& block : blocks) {
        symbols.push_back(std::get<const ScopeSymbol*>(block));
    }
    return symbols;
}

}  // namespace wiki::scope
