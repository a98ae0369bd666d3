#include "workers/wiki/scope/fan_in.h"

#include "utils/path_filter.h"
#include "workers/wiki/scope/internal/members.h"
#include "workers/wiki/scope/internal/privacy.h"
#include "workers/wiki/scope/internal/remembered_rules.h"
#include "workers/wiki/scope/kinds.h"

#include <utility>
#include <vector>

namespace wiki::scope {

namespace {

enum class Source { TEST, PAGE, OUTSIDE };

// References that one file makes to another, in a row.
struct Use {
    std::size_t source;  // its place among the sources
    std::int64_t references;
};

// Adds a use to those of a file. Uses from one source in a row become one, unless a count is negative or so large that
// the sum could go beyond 64 bits, where counting stops.
void add(std::vector<Use>& uses, const Use& use) {
    constexpr std::int64_t HALF = std::int64_t{1} << 62U;
    const auto is_small = [](const Use& each) { return each.references >= 0 && each.references < HALF; };
    if (!uses.empty() && uses.back().source == use.source && is_small(uses.back()) && is_small(use)) {
        uses.back().references += use.references;
    } else {
        uses.push_back(use);
    }
}

// The declarations that production references reach.
struct Reached {
    Counter<SymbolId> outside;       // references that count, from outside the page
    Counter<SymbolId> inside;        // and from its own files
    OrderedSet<SymbolId> uncounted;  // the targets of references that reach them without being counted

    [[nodiscard]] bool contains(SymbolId id) const {
        return uncounted.contains(id) || outside.contains(id) || inside.contains(id);
    }
};

Reached reached_by_production(const ScopeFacts& facts) {
    const TextSet page = facts.paths();
    Remembered source_of([&](const Text& path) {
        return facts.test_sources.contains(path) ? Source::TEST : page.contains(path) ? Source::PAGE : Source::OUTSIDE;
    });
    RememberedRules rules;

    Reached reached;
    reached.outside.reserve(facts.symbols.size());
    for (const InboundReference& reference : facts.inbound) {
        const Source source = source_of(reference.source_path);
        if (source == Source::TEST) {
            continue;
        }
        const UseRules of_resolution = rules.of(reference.resolution);
        if (rules.includes(of_resolution.likely_use, reference.target_kind)) {
            (source == Source::PAGE ? reached.inside : reached.outside).add(reference.target_id, reference.refs);
        } else if (of_resolution.reaches_target) {
            reached.uncounted.insert(reference.target_id);
        }
    }
    return reached;
}

// In the order of `facts.symbols`.
OrderedSet<SymbolId> entry_points(const ScopeFacts& facts, const Reached& reached) {
    const OrderedSet<SymbolId> members = _members(facts);
    Remembered can_be_entry([](const Text& kind) { return is_callable_or_type(kind); });
    OrderedSet<SymbolId> entry;
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (can_be_entry(symbol.kind) && symbol.is_export && !_is_private(symbol.name) &&
            !reached.contains(symbol.id) && !members.contains(symbol.id) && !utils::is_test_path(symbol.path)) {
            entry.insert(symbol.id);
        }
    }
    return entry;
}

}  // namespace

FanIn production_fan_in(const ScopeFacts& facts) {
    Reached reached = reached_by_production(facts);
    OrderedSet<SymbolId> entry = entry_points(facts, reached);
    return {std::move(reached.outside), std::move(reached.inside), std::move(entry)};
}

FileUsers file_users(const ScopeFacts& facts) {
    Remembered is_test([&](const Text& path) { return facts.test_sources.contains(path); });
    auto is_use_of = _use_rule(facts);

    // Uses are gathered by file first: reading one counter after the other is faster than reading all by turns.
    std::vector<Text> sources;
    OrderedMap<Text, std::vector<Use>> uses_by_file;
    for (const InboundReference& reference : facts.inbound) {
        if (!is_test(reference.source_path) && is_use_of(reference) && reference.source_path != reference.target_path) {
            if (sources.empty() || !sources.back().same_buffer(reference.source_path)) {
                sources.push_back(reference.source_path);
            }
            add(uses_by_file[reference.target_path], {sources.size() - 1, reference.refs});
        }
    }

    FileUsers users;
    users.reserve(uses_by_file.size());
    for (const auto& [path, uses] : uses_by_file) {
        Counter<Text>& of_file = users[path];
        of_file.reserve(uses.size());
        for (const Use& use : uses) {
            of_file.add(sources[use.source], use.references);
        }
    }
    return users;
}

}  // namespace wiki::scope
