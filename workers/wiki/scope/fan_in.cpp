#include "workers/wiki/scope/fan_in.h"

#include "utils/path_filter.h"
#include "workers/wiki/scope/internal.h"

#include <utility>

namespace wiki::scope {

namespace {

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
            .marks_target = resolution != "legacy"};
}

}  // namespace

bool is_use(std::string_view resolution, std::string_view target_kind, bool import_resolved) {
    if (EVIDENCE_RESOLUTIONS.contains(resolution)) {
        return true;
    }
    return resolution == "unique" && !import_resolved && !NAME_MATCH_KINDS.contains(target_kind);
}

FanIn production_fan_in(const ScopeFacts& facts) {
    const TextSet page = facts.paths();
    OncePerText source_of([&](const Text& path) {
        return facts.test_sources.contains(path) ? Source::TEST
               : page.contains(path)             ? Source::PAGE
                                                 : Source::OUTSIDE;
    });
    OncePerText resolution_of(judge_resolution);
    OncePerText matches_by_name([](const Text& kind) { return NAME_MATCH_KINDS.contains(kind); });

    Counter<SymbolId> outside;
    Counter<SymbolId> inside;
    OrderedSet<SymbolId> referenced;
    for (const InboundReference& reference : facts.inbound) {
        const Source source = source_of(reference.source_path);
        if (source == Source::TEST) {
            continue;
        }
        const Resolution resolution = resolution_of(reference.resolution);
        if (resolution.marks_target) {
            referenced.insert(reference.target_id);
        }
        if (resolution.evidence || (resolution.trusted && !matches_by_name(reference.target_kind))) {
            (source == Source::PAGE ? inside : outside).add(reference.target_id, reference.refs);
        }
    }

    const OrderedSet<SymbolId> members = _members(facts);
    OrderedSet<SymbolId> entry;
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (_is_callable_or_type(symbol.kind) && symbol.is_export && !_is_private(symbol.name) &&
            !referenced.contains(symbol.id) && !members.contains(symbol.id) &&
            !utils::is_test_path(symbol.path)) {
            entry.insert(symbol.id);
        }
    }
    return {std::move(outside), std::move(inside), std::move(entry)};
}

FileUsers file_users(const ScopeFacts& facts) {
    FileUsers users;
    for (const InboundReference& reference : facts.inbound) {
        if (reference.source_path == reference.target_path ||
            facts.test_sources.contains(reference.source_path)) {
            continue;
        }
        if (is_use(reference.resolution, reference.target_kind,
                   facts.import_resolved(reference.target_path))) {
            users[reference.target_path].add(reference.source_path, reference.refs);
        }
    }
    return users;
}

}  // namespace wiki::scope
