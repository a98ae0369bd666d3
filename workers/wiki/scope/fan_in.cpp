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

}  // namespace

bool is_use(std::string_view resolution, std::string_view target_kind, bool import_resolved) {
    const Resolution judged = _judged(resolution);
    return judged.is_evidence || (judged.is_unique && !import_resolved && !NAME_MATCH_KINDS.contains(target_kind));
}

FanIn production_fan_in(const ScopeFacts& facts) {
    const TextSet page = facts.paths();
    Remembered source_of([&](const Text& path) {
        return facts.test_sources.contains(path) ? Source::TEST : page.contains(path) ? Source::PAGE : Source::OUTSIDE;
    });
    auto resolution_of = _resolution_rule();
    auto is_name_match_kind = _name_match_kind_rule();
    // Where every reference that counts also marks its target, the marks of those that do not are all that is left to
    // be noted.
    constexpr bool COUNTS_MARK = !EVIDENCE_RESOLUTIONS.contains(models::LEGACY) && !TRUSTED.contains(models::LEGACY);

    Counter<SymbolId> outside;
    outside.reserve(facts.symbols.size());
    Counter<SymbolId> inside;
    OrderedSet<SymbolId> marked;
    for (const InboundReference& reference : facts.inbound) {
        const Source source = source_of(reference.source_path);
        if (source == Source::TEST) {
            continue;
        }
        const Resolution resolution = resolution_of(reference.resolution);
        const bool counts =
            resolution.is_evidence || (resolution.is_trusted && !is_name_match_kind(reference.target_kind));
        if (counts) {
            (source == Source::PAGE ? inside : outside).add(reference.target_id, reference.refs);
        }
        if (resolution.marks_target && !(counts && COUNTS_MARK)) {
            marked.insert(reference.target_id);
        }
    }
    const auto is_referenced = [&](SymbolId id) {
        return marked.contains(id) || (COUNTS_MARK && (outside.contains(id) || inside.contains(id)));
    };

    const OrderedSet<SymbolId> members = _members(facts);
    Remembered can_be_entry([](const Text& kind) { return is_callable_or_type(kind); });
    OrderedSet<SymbolId> entry;
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (can_be_entry(symbol.kind) && symbol.is_export && !_is_private(symbol.name) && !is_referenced(symbol.id) &&
            !members.contains(symbol.id) && !utils::is_test_path(symbol.path)) {
            entry.insert(symbol.id);
        }
    }
    return {std::move(outside), std::move(inside), std::move(entry)};
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
