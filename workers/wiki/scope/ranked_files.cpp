#include "workers/wiki/scope/ranked_files.h"

#include "utils/saturating.h"
#include "workers/wiki/scope/internal/privacy.h"
#include "workers/wiki/scope/kinds.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace wiki::scope {

namespace {

constexpr std::int64_t SIZE_CAP = 40;  // lines: the size of a body beyond which size ranks no further

struct Ranked {
    RankKey key;
    const ScopeSymbol* symbol;
};

// More uses rank better; those of a constant weigh half.
std::int64_t weighted_rank(std::int64_t uses, bool is_constant) {
    const std::int64_t rank = utils::saturating_negation(uses);
    return is_constant ? rank : utils::saturating_sum(rank, rank);
}

}  // namespace

RankKey rank_key(const ScopeSymbol& symbol, const FanIn& fan_in) {
    const bool is_constant = symbol.kind == "constant";
    const std::int64_t size = std::int64_t{symbol.end_line} - symbol.start_line;
    return {.is_internal = !fan_in.api(symbol.id),
            .kind_group = is_callable_or_type(symbol.kind) ? 0 : 1,
            .is_private = _is_private(symbol.name),
            .outside = weighted_rank(fan_in.outside.get(symbol.id, 0), is_constant),
            .size = -std::min(size, SIZE_CAP),
            .inside = weighted_rank(fan_in.inside.get(symbol.id, 0), is_constant),
            .start_line = symbol.start_line};
}

RankedFiles ranked_by_file(const ScopeFacts& facts, const FanIn& fan_in) {
    OrderedMap<Text, std::vector<Ranked>> keyed;
    for (const ScopeSymbol& symbol : facts.symbols) {
        keyed[symbol.path].push_back({rank_key(symbol, fan_in), &symbol});
    }
    keyed.update_each([](std::vector<Ranked>& declarations) {
        std::stable_sort(declarations.begin(), declarations.end(),
                         [](const Ranked& left, const Ranked& right) { return left.key < right.key; });
    });

    RankedFiles ranked;
    ranked.reserve(keyed.size());
    for (const auto& [path, declarations] : keyed) {
        std::vector<const ScopeSymbol*>& symbols = ranked[path];
        symbols.reserve(declarations.size());
        std::transform(declarations.begin(), declarations.end(), std::back_inserter(symbols),
                       [](const Ranked& declaration) { return declaration.symbol; });
    }
    return ranked;
}

OrderedMap<Text, LineRange> file_seeds(const ScopeFacts& facts, const FanIn& fan_in) {
    OrderedMap<Text, std::optional<Ranked>> best_on_a_line;
    for (const ScopeSymbol& symbol : facts.symbols) {
        std::optional<Ranked>& best = best_on_a_line[symbol.path];
        if (symbol.start_line > 0) {
            const Ranked ranked{rank_key(symbol, fan_in), &symbol};
            if (!best || ranked.key < best->key) {
                best = ranked;
            }
        }
    }

    OrderedMap<Text, LineRange> seeds;
    for (const auto& [path, best] : best_on_a_line) {
        if (best) {
            seeds[path] = {best->symbol->start_line, std::max(best->symbol->start_line, best->symbol->end_line)};
        }
    }
    for (const ScopeFile& file : facts.files) {
        const std::int64_t lines = facts.line_counts.get(file.path, 0);
        if (lines > 0 && !seeds.contains(file.path)) {
            seeds[file.path] = {1, lines};
        }
    }
    return seeds;
}

}  // namespace wiki::scope
