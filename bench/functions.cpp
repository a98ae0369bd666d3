#include "bench/functions.h"

#include <benchmark/benchmark.h>

#include <string_view>

namespace bench {

namespace {

using namespace wiki::scope;

constexpr std::int64_t TOTAL = 24;
constexpr std::int64_t LARGE_TOTAL = 10'000;  // more than two for each file
constexpr std::int64_t LIMIT = 12;

template <class Result>
void keep(const Result& result) {
    benchmark::DoNotOptimize(&result);
    benchmark::ClobberMemory();
}

void judge_each_use(const ScopeFacts& facts) {
    std::size_t uses = 0;
    for (const InboundReference& reference : facts.inbound) {
        uses +=
            is_use(reference.resolution, reference.target_kind, facts.import_resolved(reference.target_path)) ? 1 : 0;
    }
    keep(uses);
}

void key_each_declaration(const Page& page) {
    for (const ScopeSymbol& symbol : page.facts.symbols) {
        keep(rank_key(symbol, page.fan_in));
    }
}

void select(const Page& page, std::int64_t total) {
    keep(select_with_quota(page.ranked, page.fan_in, total, 2, 0.4));
}

}  // namespace

std::vector<NamedPath> names_of(const std::vector<const ScopeSymbol*>& declarations) {
    std::vector<NamedPath> names;
    for (const ScopeSymbol* declaration : declarations) {
        if (is_callable_or_type(declaration->kind)) {
            names.push_back({declaration->name, declaration->path});
        }
    }
    return names;
}

void bare_pass(const Page& page) {
    std::size_t hashes = 0;
    Counter<SymbolId> by_target;
    for (const InboundReference& reference : page.facts.inbound) {
        hashes ^= std::hash<std::string_view>{}(reference.source_path);
        by_target.add(reference.target_id, reference.refs);
    }
    keep(hashes);
    keep(by_target);
}

void whole_pass(const ScopeFacts& facts) {
    const FanIn fan_in = production_fan_in(facts);
    keep(file_users(facts));
    const RankedFiles ranked = ranked_by_file(facts, fan_in);
    keep(file_seeds(facts, fan_in));
    keep(pick_spread(names_of(select_with_quota(ranked, fan_in, TOTAL, 2, 0.4)), LIMIT, 2));
    keep(render_file_cards(facts, fan_in, "## Files"));
    keep(render_consumers(facts, fan_in, "## Consumers"));
    keep(neighbours(facts, LIMIT));
    keep(name_match_counts(facts));
}

const std::vector<Function>& functions() {
    static const std::vector<Function> FUNCTIONS{
        {"is_use of each reference", [](const Page& page) { judge_each_use(page.facts); }},
        {"production_fan_in", [](const Page& page) { keep(production_fan_in(page.facts)); }},
        {"file_users", [](const Page& page) { keep(file_users(page.facts)); }},
        {"rank_key of each declaration", key_each_declaration},
        {"ranked_by_file", [](const Page& page) { keep(ranked_by_file(page.facts, page.fan_in)); }},
        {"file_seeds", [](const Page& page) { keep(file_seeds(page.facts, page.fan_in)); }},
        {"select_with_quota", [](const Page& page) { select(page, TOTAL); }},
        {"select_with_quota of 10,000", [](const Page& page) { select(page, LARGE_TOTAL); }},
        {"pick_spread over all", [](const Page& page) { keep(pick_spread(page.names, LARGE_TOTAL, 2)); }},
        {"render_file_cards", [](const Page& page) { keep(render_file_cards(page.facts, page.fan_in, "#")); }},
        {"render_consumers", [](const Page& page) { keep(render_consumers(page.facts, page.fan_in, "#")); }},
        {"neighbours", [](const Page& page) { keep(neighbours(page.facts, LIMIT)); }},
        {"name_match_counts", [](const Page& page) { keep(name_match_counts(page.facts)); }},
        {"whole pass", [](const Page& page) { whole_pass(page.facts); }},
    };
    return FUNCTIONS;
}

}  // namespace bench
