// The rules of counting once more, as plainly as they can be written.

#include "fuzz/page_promises.h"
#include "fuzz/plain_rules.h"
#include "fuzz/promise.h"
#include "models/edge.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/kinds.h"
#include "workers/wiki/scope/neighbours.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace fuzz {

namespace {

using namespace wiki::scope;

void check_fan_in(const ScopeFacts& facts) {
    PlainCounter<SymbolId> outside;
    PlainCounter<SymbolId> inside;
    std::set<SymbolId> not_entry;
    for (const InboundReference& reference : facts.inbound) {
        if (utils::is_test_path(reference.source_path)) {
            continue;
        }
        if (reference.resolution != "legacy") {
            not_entry.insert(reference.target_id);
        }
        if (EVIDENCE_RESOLUTIONS.contains(reference.resolution) ||
            (models::TRUSTED_RESOLUTIONS.contains(reference.resolution) &&
             !NAME_MATCH_KINDS.contains(reference.target_kind))) {
            (is_of_page(reference.source_path, facts) ? inside : outside).add(reference.target_id, reference.refs);
        }
    }
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (is_in_type(symbol, facts)) {
            not_entry.insert(symbol.id);
        }
    }
    OrderedSet<SymbolId> entry;
    for (const ScopeSymbol& symbol : facts.symbols) {
        const bool is_code = CALLABLE_KINDS.contains(symbol.kind) || TYPE_KINDS.contains(symbol.kind);
        if (is_code && symbol.is_export && !symbol.name.view().starts_with('_') && !not_entry.contains(symbol.id) &&
            !utils::is_test_path(symbol.path)) {
            entry.insert(symbol.id);
        }
    }
    const FanIn fan_in = production_fan_in(facts);
    promise(outside.equals(fan_in.outside), "the uses from outside are those that count");
    promise(inside.equals(fan_in.inside), "the uses from inside are those that count");
    promise(fan_in.entry == entry, "the entry points are the public top-level code that nothing references");
}

void check_file_users(const ScopeFacts& facts) {
    const FileUsers users = file_users(facts);
    const auto uses = [&](const InboundReference& reference) {
        return reference.source_path != reference.target_path && !utils::is_test_path(reference.source_path) &&
               is_use(reference.resolution, reference.target_kind, facts.import_resolved(reference.target_path));
    };
    PlainCounter<Text> used;
    for (const InboundReference& reference : facts.inbound) {
        if (uses(reference)) {
            used.add(reference.target_path, reference.refs);
        }
    }
    promise(std::ranges::equal(used.counts(), users, {}, &std::pair<Text, std::int64_t>::first, &FileUsers::Entry::key),
            "the used files stand in the order of first use");
    for (const auto& [path, sources] : users) {
        PlainCounter<Text> plain;
        for (const InboundReference& reference : facts.inbound) {
            if (reference.target_path == path && uses(reference)) {
                plain.add(reference.source_path, reference.refs);
            }
        }
        promise(plain.equals(sources), "the users of a file are those that count");
    }
}

void check_neighbours(const ScopeFacts& facts, std::int64_t limit) {
    PlainCounter<SymbolId> counted;
    std::map<SymbolId, const ScopeSymbol*> targets;
    for (const OutboundReference& reference : facts.outbound) {
        const ScopeSymbol& target = reference.target;
        if (!is_of_page(target.path, facts) && !utils::is_test_path(target.path) &&
            (EVIDENCE_RESOLUTIONS.contains(reference.resolution) || !NAME_MATCH_KINDS.contains(target.kind))) {
            counted.add(target.id, reference.refs);
            targets[target.id] = &target;
        }
    }
    std::vector<Neighbour> expected;
    for (const auto& [id, refs] : counted.counts()) {
        expected.push_back({targets[id], refs});
    }
    std::ranges::stable_sort(expected, [](const Neighbour& left, const Neighbour& right) {
        return left.refs != right.refs ? left.refs > right.refs : left.target->fqn.view() < right.target->fqn.view();
    });
    expected.resize(std::min(expected.size(), static_cast<std::size_t>(std::max<std::int64_t>(limit, 0))));
    promise(neighbours(facts, limit) == expected, "the neighbours are the most used declarations elsewhere");
}

void check_name_matches(const ScopeFacts& facts) {
    PlainCounter<FilePair> matches;
    for (const InboundReference& reference : facts.inbound) {
        if (reference.resolution == "unique" && NAME_MATCH_KINDS.contains(reference.target_kind)) {
            matches.add({reference.source_path, reference.target_path}, reference.refs);
        }
    }
    for (const OutboundReference& reference : facts.outbound) {
        if (reference.resolution == "unique" && NAME_MATCH_KINDS.contains(reference.target.kind)) {
            matches.add({reference.source_path, reference.target.path}, reference.refs);
        }
    }
    promise(matches.equals(name_match_counts(facts)), "the name matches are counted by their files");
}

}  // namespace

void check_counting(const ScopeFacts& facts, const Numbers& numbers) {
    check_fan_in(facts);
    check_file_users(facts);
    check_neighbours(facts, numbers.limit);
    check_name_matches(facts);
}

}  // namespace fuzz
