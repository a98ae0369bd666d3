#include "workers/wiki/scope/fan_in.h"

#include "utils/path_filter.h"
#include "workers/wiki/scope/internal.h"

#include <utility>

namespace wiki::scope {

namespace {

constexpr std::string_view LEGACY = "legacy";

// So a reference that counts always marks its target, and only those that do not count need to be noted apart.
static_assert(!EVIDENCE_RESOLUTIONS.contains(LEGACY) && !TRUSTED.contains(LEGACY));

enum class Source { TEST, PAGE, OUTSIDE };

// What the resolution of a reference says by itself.
struct Resolution {
    bool evidence = false;
    bool trusted = false;
    bool marks_target = false;  // the target is referenced, counted or not
};

Resolution judge_resolution(const Text& resolution) {
    return {.evidence = EVIDENCE_RESOLUTIONS.contains(resolution),
            .trusted = TRUSTED.contains(resolution),
            .marks_target = resolution != LEGACY};
}

}  // namespace

bool is_use(std::string_view resolution, std::string_view target_kind, bool import_resolved) {
    return _is_use(
        _standing(resolution), [&] { return import_resolved; }, [&] { return NAME_MATCH_KINDS.contains(target_kind); });
}

FanIn production_fan_in(const ScopeFacts& facts) {
    const TextSet page = facts.paths();
    Remembered source_of([&](const Text& path) {
        return facts.test_sources.contains(path) ? Source::TEST : page.contains(path) ? Source::PAGE : Source::OUTSIDE;
    });
    Remembered resolution_of(judge_resolution);
    Remembered matches_by_name([](const Text& kind) { return NAME_MATCH_KINDS.contains(kind); });

    Counter<SymbolId> outside;
    Counter<SymbolId> inside;
    OrderedSet<SymbolId> uncounted;
    for (const InboundReference& reference : facts.inbound) {
        const Source source = source_of(reference.source_path);
        if (source == Source::TEST) {
            continue;
        }
        const Resolution resolution = resolution_of(reference.resolution);
        if (resolution.evidence || (resolution.trusted && !matches_by_name(reference.target_kind))) {
            (source == Source::PAGE ? inside : outside).add(reference.target_id, reference.refs);
        } else if (resolution.marks_target) {
            uncounted.insert(reference.target_id);
        }
    }
    const auto is_referenced = [&](SymbolId id) {
        return outside.contains(id) || inside.contains(id) || uncounted.contains(id);
    };

    const OrderedSet<SymbolId> members = _members(facts);
    Remembered can_be_entry([](const Text& kind) { return _is_callable_or_type(kind); });
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

    FileUsers users;
    for (const InboundReference& reference : facts.inbound) {
        if (reference.source_path != reference.target_path && !is_test(reference.source_path) && is_use_of(reference)) {
            users[reference.target_path].add(reference.source_path, reference.refs);
        }
    }
    return users;
}

}  // namespace wiki::scope
