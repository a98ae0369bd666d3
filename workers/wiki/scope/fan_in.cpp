#include "workers/wiki/scope/fan_in.h"

#include "utils/path_filter.h"
#include "utils/saturating.h"
#include "workers/wiki/scope/internal/evidence.h"
#include "workers/wiki/scope/internal/members.h"
#include "workers/wiki/scope/internal/privacy.h"
#include "workers/wiki/scope/kinds.h"

#include <limits>
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

// Adds a use to those of a file. It is added to the use before it if that has the same source and the counts come out
// the same: both must be positive or 0, and their sum must not reach the end of the integers, where it would stop.
void add(std::vector<Use>& uses, const Use& use) {
    if (!uses.empty() && uses.back().source == use.source && uses.back().references >= 0 && use.references >= 0) {
        const std::int64_t sum = utils::saturating_sum(uses.back().references, use.references);
        if (sum < std::numeric_limits<std::int64_t>::max()) {
            uses.back().references = sum;
            return;
        }
    }
    uses.push_back(use);
}

// Where every reference that counts also marks its target, the marks of those that do not are all that is left to be
// noted.
constexpr bool COUNTS_MARK = !EVIDENCE_RESOLUTIONS.contains(models::LEGACY) && !TRUSTED.contains(models::LEGACY);

// The declarations that production references reach.
struct Reached {
    Counter<SymbolId> outside;    // references that count, from outside the page
    Counter<SymbolId> inside;     // and from its own files
    OrderedSet<SymbolId> marked;  // the targets of those that only mark them

    [[nodiscard]] bool contains(SymbolId id) const {
        return marked.contains(id) || (COUNTS_MARK && (outside.contains(id) || inside.contains(id)));
    }
};

Reached reached_by_production(const ScopeFacts& facts) {
    const TextSet page = facts.paths();
    Remembered source_of([&](const Text& path) {
        return facts.test_sources.contains(path) ? Source::TEST : page.contains(path) ? Source::PAGE : Source::OUTSIDE;
    });
    auto resolution_of = _resolution_rule();
    auto is_name_match_kind = _name_match_kind_rule();

    Reached reached;
    reached.outside.reserve(facts.symbols.size());
    for (const InboundReference& reference : facts.inbound) {
        const Source source = source_of(reference.source_path);
        if (source == Source::TEST) {
            continue;
        }
        const Resolution resolution = resolution_of(reference.resolution);
        const bool counts =
            resolution.is_evidence || (resolution.is_trusted && !is_name_match_kind(reference.target_kind));
        if (counts) {
            (source == Source::PAGE ? reached.inside : reached.outside).add(reference.target_id, reference.refs);
        }
        if (resolution.marks_target && !(counts && COUNTS_MARK)) {
            reached.marked.insert(reference.target_id);
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

bool is_use(std::string_view resolution, std::string_view target_kind, bool import_resolved) {
    const Resolution judged = _judged(resolution);
    return judged.is_evidence || (judged.is_unique && !import_resolved && !NAME_MATCH_KINDS.contains(target_kind));
}

FanIn production_fan_in(const ScopeFacts& facts) {
    Reached reached = reached_by_production(facts);
    OrderedSet<SymbolId> entry = entry_points(facts, reached);
    return {std::move(reached.outside), std::move(reached.inside), std::move(entry)};
}

FileUsers file_users(const ScopeFacts& facts) {
    Remembered is_test([&](const Text& path) { return facts.test_sources.contains(path); });
    auto is_use_of = _use_rule(facts);

    // The uses are put side by side first, and counted file by file then: so what is looked up lies together. An index
    // gives the references from one file one after the other, which makes them few.
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
