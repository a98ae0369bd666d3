#include "utils/first_in_order.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/internal/evidence.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <compare>

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
    auto resolution_of = _resolution_rule();
    auto is_name_match_kind = _name_match_kind_rule();

    OrderedMap<SymbolId, Neighbour> counted;
    for (const OutboundReference& reference : facts.outbound) {
        const ScopeSymbol& target = reference.target;
        if (!is_production_elsewhere(target.path) ||
            (!resolution_of(reference.resolution).is_evidence && is_name_match_kind(target.kind))) {
            continue;
        }
        Neighbour& neighbour = counted[target.id];
        neighbour = {&target, utils::saturating_sum(neighbour.refs, reference.refs)};
    }

    const auto by_use = [](const auto& left, const auto& right) {
        const auto by_count = right.value.refs <=> left.value.refs;
        return std::is_neq(by_count) ? by_count : left.value.target->fqn <=> right.value.target->fqn;
    };
    std::vector<Neighbour> first;
    const auto most = static_cast<std::size_t>(std::max<std::int64_t>(limit, 0));
    for (const auto* entry : utils::first_in_order(counted, most, by_use)) {
        first.push_back(entry->value);
    }
    return first;
}

OrderedMap<FilePair, std::int64_t> name_match_counts(const ScopeFacts& facts) {
    auto resolution_of = _resolution_rule();
    auto is_name_match_kind = _name_match_kind_rule();

    Counter<FilePair> counts;
    for (const InboundReference& reference : facts.inbound) {
        if (resolution_of(reference.resolution).is_unique && is_name_match_kind(reference.target_kind)) {
            counts.add({reference.source_path, reference.target_path}, reference.refs);
        }
    }
    for (const OutboundReference& reference : facts.outbound) {
        if (resolution_of(reference.resolution).is_unique && is_name_match_kind(reference.target.kind)) {
            counts.add({reference.source_path, reference.target.path}, reference.refs);
        }
    }
    return counts;
}

}  // namespace wiki::scope
