#include "fuzz/page_promises.h"
#include "fuzz/plain_rules.h"
#include "fuzz/promise.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/file_cards.h"
#include "workers/wiki/scope/ranked_files.h"

#include <algorithm>
#include <compare>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

namespace fuzz {

namespace {

using namespace wiki::scope;

template <class Element>
models::Excerpt<Element> first_of(std::vector<Element> all, std::size_t limit) {
    models::Excerpt<Element> excerpt{.shown = {}, .total = all.size()};
    all.resize(std::min(limit, all.size()));
    excerpt.shown = std::move(all);
    return excerpt;
}

// Keys with their counts as records, most references first, equal counts in their order.
template <class Record, class Counts>
std::vector<Record> by_references(const Counts& counts) {
    std::vector<Record> records;
    for (const auto& [key, references] : counts) {
        records.push_back({key, references});
    }
    std::ranges::stable_sort(records, std::greater(), &Record::references);
    return records;
}

std::vector<UsedDeclaration> used_declarations(const ScopeFacts& facts, const Text& path,
                                               const OrderedMap<SymbolId, std::int64_t>& counts) {
    std::vector<std::pair<const ScopeSymbol*, std::int64_t>> used;
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (symbol.path == path && counts.get(symbol.id, 0) > 0) {
            used.emplace_back(&symbol, counts.get(symbol.id, 0));
        }
    }
    return by_references<UsedDeclaration>(used);
}

FileCard plain_card(const ScopeFacts& facts, const FanIn& fan_in, const Text& path) {
    FileCard card{.path = path, .is_indexed = true};
    if (facts.line_counts.contains(path)) {
        card.lines = facts.line_counts.get(path, 0);
    }
    card.declarations = static_cast<std::size_t>(std::ranges::count(facts.symbols, path, &ScopeSymbol::path));
    card.summary = facts.summaries.get(path, "");
    const std::vector<UsedDeclaration> outside = used_declarations(facts, path, fan_in.outside);
    const std::vector<UsedDeclaration> inside = used_declarations(facts, path, fan_in.inside);
    card.is_used_inside_only = outside.empty() && !inside.empty();
    card.most_used = first_of(outside.empty() ? inside : outside, 3);
    card.users = first_of(by_references<FileUser>(file_users(facts).get(path, {})), 3);
    card.tests = first_of(wiki::tests_reaching(facts).tests_by_file.get(path, {}), 3);
    return card;
}

void check_file_cards(const ScopeFacts& facts, const FanIn& fan_in, std::span<const std::string> missing) {
    std::vector<FileCard> expected;
    for (const ScopeFile& file : facts.files) {
        expected.push_back(plain_card(facts, fan_in, file.path));
    }
    for (const std::string& path : missing) {
        expected.push_back({.path = path});
    }
    promise(file_cards(facts, fan_in, missing) == expected, "a card for each file, those of missing files last");
}

// Of the references from production files outside the page, those for which `is_use` gives `counts`.
std::vector<const InboundReference*> from_outside(const ScopeFacts& facts, bool counts) {
    std::vector<const InboundReference*> references;
    for (const InboundReference& reference : facts.inbound) {
        if (!is_of_page(reference.source_path, facts) && !utils::is_test_path(reference.source_path) &&
            is_use(reference.resolution, reference.target_kind, facts.import_resolved(reference.target_path)) ==
                counts) {
            references.push_back(&reference);
        }
    }
    return references;
}

models::Excerpt<Consumer> plain_consumers(const std::vector<const InboundReference*>& uses) {
    std::map<Text, PlainCounter<Text>> names;
    PlainCounter<Text> files;
    for (const InboundReference* use : uses) {
        files.add(use->source_path, use->refs);
        names[use->source_path].add(use->target_name, use->refs);
    }
    std::vector<Consumer> consumers;
    for (const auto& [path, references] : files.counts()) {
        consumers.push_back({path, references, first_of(by_references<UsedName>(names[path].counts()), 4)});
    }
    std::ranges::sort(consumers, [](const Consumer& left, const Consumer& right) {
        return std::tie(right.references, left.path) < std::tie(left.references, right.path);
    });
    return first_of(consumers, 12);
}

models::Excerpt<const ScopeSymbol*> plain_unused(const ScopeFacts& facts, const FanIn& fan_in,
                                                 const std::vector<const InboundReference*>& uses) {
    std::set<SymbolId> used;
    for (const InboundReference* use : uses) {
        used.insert(use->target_id);
    }
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (is_in_type(symbol, facts)) {
            used.insert(symbol.id);
        }
    }
    std::vector<const ScopeSymbol*> unused;
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (is_callable_or_type(symbol.kind) && symbol.is_export && !symbol.name.view().starts_with('_') &&
            !used.contains(symbol.id)) {
            unused.push_back(&symbol);
        }
    }
    std::ranges::stable_sort(unused, {}, [&](const ScopeSymbol* symbol) {
        return std::tuple(!TYPE_KINDS.contains(symbol->kind), rank_key(*symbol, fan_in), symbol->path);
    });
    return first_of(unused, 8);
}

void check_consumers(const ScopeFacts& facts, const FanIn& fan_in) {
    const Consumers found = consumers(facts, fan_in);
    const std::vector<const InboundReference*> uses = from_outside(facts, true);
    promise(found.files == plain_consumers(uses), "the consumers with the most references, and their names");
    promise(found.unused == plain_unused(facts, fan_in, uses), "the public code that no consumer uses");

    std::map<Text, std::int64_t> uncounted;
    std::set<Text> sources;
    for (const InboundReference* reference : from_outside(facts, false)) {
        std::int64_t& references = uncounted[reference->resolution];
        references = utils::saturating_sum(references, reference->refs);
        sources.insert(reference->source_path);
    }
    std::vector<UncountedReferences> expected;
    for (const auto& [resolution, references] : uncounted) {
        expected.push_back({resolution, references});
    }
    promise(found.uncounted == expected && found.uncounted_files == sources.size(),
            "what does not count, by resolution in order");

    std::set<Text> languages;
    for (const ScopeFile& file : facts.files) {
        if (!facts.import_resolved(file.path)) {
            languages.insert(file.language.value_or(""));
        }
    }
    promise(std::ranges::equal(found.unresolved_languages, languages), "the languages without resolved imports");
}

}  // namespace

void check_values(const ScopeFacts& facts, std::span<const std::string> missing) {
    const FanIn fan_in = production_fan_in(facts);
    check_file_cards(facts, fan_in, missing);
    check_consumers(facts, fan_in);
}

}  // namespace fuzz
