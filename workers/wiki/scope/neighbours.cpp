#include "workers/wiki/scope/neighbours.h"

#include "utils/first_in_order.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/internal/remembered_rules.h"

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
    RememberedRules rules;

    OrderedMap<SymbolId, Neighbour> counted;
    for (const OutboundReference& reference : facts.outbound) {
        const ScopeSymbol& target = reference.target;
        if (is_production_elsewhere(target.path) &&
            rules.includes(rules.of(reference.resolution).neighbour, target.kind)) {
            Neighbour& neighbour = counted[target.id];
            neighbour = {&target, utils::saturating_sum(neighbour.refs, reference.refs)};
        }
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
    RememberedRules rules;

    Counter<FilePair> counts;
    for (const InboundReference& reference : facts.inbound) {
        if (rules.includes(rules.of(reference.resolution).name_match, reference.target_kind)) {
            counts.add({reference.source_path, reference.target_path}, reference.refs);
        }
    }
    for (const OutboundReference& reference : facts.outbound) {
        if (rules.includes(rules.of(reference.resolution).name_match, reference.target.kind)) {
            counts.add({reference.source_path, reference.target.path}, reference.refs);
        }
    }
    return counts;
}

}  // namespace wiki::scope
