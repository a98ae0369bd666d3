#include "workers/wiki/scope/consumers.h"

#include "utils/first_in_order.h"
#include "workers/wiki/scope/internal/members.h"
#include "workers/wiki/scope/internal/privacy.h"
#include "workers/wiki/scope/internal/remembered_rules.h"
#include "workers/wiki/scope/kinds.h"
#include "workers/wiki/scope/ranked_files.h"

#include <algorithm>
#include <compare>
#include <set>
#include <tuple>

namespace wiki::scope {

namespace {

constexpr std::size_t FILES_SHOWN = 12;
constexpr std::size_t NAMES_SHOWN = 4;  // of each consumer
constexpr std::size_t UNUSED_SHOWN = 8;

// What the references from production files outside the page amount to.
struct OutsideUse {
    Counter<Text> consumers;             // path -> references that count
    OrderedSet<SymbolId> used;           // the targets of the references that count
    OrderedSet<SymbolId> unproven;       // those of the references that do not
    Counter<Text> uncounted;             // resolution -> references that do not count
    OrderedSet<Text> uncounted_sources;  // the files that make those
};

OutsideUse use_from_outside(const ScopeFacts& facts) {
    const TextSet page = facts.paths();
    Remembered is_outside([&](const Text& path) { return !page.contains(path) && !facts.test_sources.contains(path); });
    auto is_use_of = _use_rule(facts);
    OutsideUse use;
    for (const InboundReference& reference : facts.inbound) {
        if (!is_outside(reference.source_path)) {
            continue;
        }
        if (is_use_of(reference)) {
            use.consumers.add(reference.source_path, reference.refs);
            use.used.insert(reference.target_id);
        } else {
            use.unproven.insert(reference.target_id);
            use.uncounted.add(reference.resolution, reference.refs);
            use.uncounted_sources.insert(reference.source_path);
        }
    }
    return use;
}

models::Excerpt<Consumer> first_consumers(const Counter<Text>& consumers) {
    models::Excerpt<Consumer> excerpt{.total = consumers.size()};
    const auto by_references_then_path = [](const auto& left, const auto& right) {
        const auto by_references = right.value <=> left.value;
        return std::is_neq(by_references) ? by_references : left.key <=> right.key;
    };
    for (const auto* consumer : utils::first_in_order(consumers, FILES_SHOWN, by_references_then_path)) {
        excerpt.shown.push_back({.path = consumer->key, .references = consumer->value});
    }
    return excerpt;
}

// Adds to each consumer the names that it uses.
void add_names(std::vector<Consumer>& consumers, const ScopeFacts& facts) {
    OrderedMap<Text, Counter<Text>> names;  // consumer -> name -> references
    for (const Consumer& consumer : consumers) {
        names[consumer.path];
    }
    Remembered is_wanted([&](const Text& path) { return names.contains(path); });
    auto is_use_of = _use_rule(facts);
    for (const InboundReference& reference : facts.inbound) {
        if (is_wanted(reference.source_path) && is_use_of(reference)) {
            names[reference.source_path].add(reference.target_name, reference.refs);
        }
    }
    for (Consumer& consumer : consumers) {
        const Counter<Text>& used = names[consumer.path];
        consumer.names.total = used.size();
        for (const auto& [name, references] : used.most_common(NAMES_SHOWN)) {
            consumer.names.shown.push_back({name, references});
        }
    }
}

std::vector<UncountedReferences> by_resolution(const Counter<Text>& uncounted) {
    std::vector<UncountedReferences> sorted;
    sorted.reserve(uncounted.size());
    for (const auto& [resolution, references] : uncounted) {
        sorted.push_back({resolution, references});
    }
    std::sort(sorted.begin(), sorted.end(), [](const UncountedReferences& left, const UncountedReferences& right) {
        return left.resolution < right.resolution;
    });
    return sorted;
}

struct Unused {
    bool is_no_type;
    RankKey key;
    const ScopeSymbol* symbol;

    [[nodiscard]] auto order() const { return std::tie(is_no_type, key, symbol->path); }
};

models::Excerpt<const ScopeSymbol*> first_unused(const ScopeFacts& facts, const OutsideUse& use, const FanIn& fan_in,
                                                 Unproven unproven) {
    const OrderedSet<SymbolId> members = _members(facts);
    const auto is_used = [&](SymbolId id) {
        return use.used.contains(id) || (unproven == Unproven::MAY_BE_USE && use.unproven.contains(id));
    };
    std::vector<Unused> unused;
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (is_callable_or_type(symbol.kind) && !is_used(symbol.id) && symbol.is_export && !_is_private(symbol.name) &&
            !members.contains(symbol.id)) {
            unused.push_back({!TYPE_KINDS.contains(symbol.kind), rank_key(symbol, fan_in), &symbol});
        }
    }
    models::Excerpt<const ScopeSymbol*> excerpt{.total = unused.size()};
    const auto in_order = [](const Unused& left, const Unused& right) { return left.order() <=> right.order(); };
    for (const Unused* declaration : utils::first_in_order(unused, UNUSED_SHOWN, in_order)) {
        excerpt.shown.push_back(declaration->symbol);
    }
    return excerpt;
}

std::vector<Text> unresolved_languages(const ScopeFacts& facts) {
    std::set<Text> languages;
    for (const ScopeFile& file : facts.files) {
        if (!facts.import_resolved(file.path)) {
            languages.insert(file.language.value_or(Text()));
        }
    }
    return {languages.begin(), languages.end()};
}

}  // namespace

Consumers consumers(const ScopeFacts& facts, const FanIn& fan_in, Unproven unproven) {
    const OutsideUse use = use_from_outside(facts);
    Consumers found{.files = first_consumers(use.consumers),
                    .uncounted = by_resolution(use.uncounted),
                    .uncounted_files = use.uncounted_sources.size(),
                    .unused = first_unused(facts, use, fan_in, unproven),
                    .unresolved_languages = unresolved_languages(facts)};
    add_names(found.files.shown, facts);
    return found;
}

}  // namespace wiki::scope
