#include "utils/path_filter.h"
#include "workers/wiki/scope/internal.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <utility>

namespace wiki::scope {

std::vector<Neighbour> neighbours(const ScopeFacts& facts, std::int64_t limit) {
    const TextSet page = facts.paths();
    OrderedMap<Text, bool> verdicts;
    Remembered is_production_elsewhere([&](const Text& path) {
        const auto [verdict, is_new] = verdicts.find_or_add(path);
        if (is_new) {
            verdict = !page.contains(path) && !utils::is_test_path(path);
        }
        return verdict;
    });
    Remembered is_evidence([](const Text& resolution) { return EVIDENCE_RESOLUTIONS.contains(resolution); });
    Remembered matches_by_name([](const Text& kind) { return NAME_MATCH_KINDS.contains(kind); });

    OrderedMap<SymbolId, Neighbour> counted;
    for (const OutboundReference& reference : facts.outbound) {
        const ScopeSymbol& target = reference.target;
        if (!is_production_elsewhere(target.path) ||
            (!is_evidence(reference.resolution) && matches_by_name(target.kind))) {
            continue;
        }
        Neighbour& neighbour = counted[target.id];
        neighbour = {&target, utils::saturating_sum(neighbour.refs, reference.refs)};
    }

    std::vector<Neighbour> ranked;
    ranked.reserve(counted.size());
    for (const auto& [id, neighbour] : counted) {
        ranked.push_back(neighbour);
    }
    std::stable_sort(ranked.begin(), ranked.end(), [](const Neighbour& left, const Neighbour& right) {
        return left.refs != right.refs ? left.refs > right.refs : left.target->fqn < right.target->fqn;
    });
    if (std::cmp_greater(ranked.size(), limit)) {
        ranked.resize(static_cast<std::size_t>(std::max<std::int64_t>(limit, 0)));
    }
    return ranked;
}

OrderedMap<FilePair, std::int64_t> name_match_counts(const ScopeFacts& facts) {
    Remembered is_name_match([](const Text& resolution) { return resolution == "unique"; });
    Remembered matches_by_name([](const Text& kind) { return NAME_MATCH_KINDS.contains(kind); });

    Counter<FilePair> counts;
    for (const InboundReference& reference : facts.inbound) {
        if (is_name_match(reference.resolution) && matches_by_name(reference.target_kind)) {
            counts.add({reference.source_path, reference.target_path}, reference.refs);
        }
    }
    for (const OutboundReference& reference : facts.outbound) {
        if (is_name_match(reference.resolution) && matches_by_name(reference.target.kind)) {
            counts.add({reference.source_path, reference.target.path}, reference.refs);
        }
    }
    return counts;
}

}  // namespace wiki::scope
