#include "host/page/use_sites.h"

#include "utils/first_in_order.h"
#include "utils/saturating.h"
#include "workers/wiki/scope/uses.h"

#include <compare>
#include <cstddef>
#include <unordered_map>
#include <utility>

namespace host {

namespace {

using models::Excerpt;
using models::Text;
using storage::InboundReference;

constexpr std::size_t FILES_SHOWN = 3;

// Calls `on_use` with each reference by which production code outside of the page provably uses it, and with its line.
// The references of one source stand together.
template <class OnUse>
void for_each_use(const Page& page, OnUse on_use) {
    const models::TextSet own = page.facts.paths();
    const Text* source = nullptr;
    bool is_outside = false;
    for (std::size_t at = 0; at < page.facts.inbound.size(); ++at) {
        const InboundReference& reference = page.facts.inbound[at];
        if (source == nullptr || !source->same_buffer(reference.source_path)) {
            source = &reference.source_path;
            is_outside = !own.contains(*source) && !page.facts.test_sources.contains(*source);
        }
        if (is_outside && wiki::scope::use_rules(reference.resolution).is_evidence) {
            const std::int32_t line = page.inbound_lines[at];
            on_use(reference, line < 1 ? std::nullopt : std::optional(line));
        }
    }
}

void add_line(std::optional<std::int32_t>& first, const std::optional<std::int32_t>& line) {
    first = first && line ? std::min(first, line) : (line ? line : first);
}

void add_use(std::vector<UseSite>& sites, const InboundReference& reference, const std::optional<std::int32_t>& line) {
    if (sites.empty() || sites.back().path != reference.source_path) {
        sites.push_back({reference.source_path, 0, std::nullopt});
    }
    UseSite& site = sites.back();
    site.references = utils::saturating_sum(site.references, reference.refs);
    add_line(site.line, line);
}

Excerpt<UseSite> first_of(const std::vector<UseSite>& sites) {
    const auto by_references_then_path = [](const UseSite& left, const UseSite& right) {
        const auto by_references = right.references <=> left.references;
        return std::is_neq(by_references) ? by_references : left.path <=> right.path;
    };
    Excerpt<UseSite> excerpt{.total = sites.size()};
    for (const UseSite* const site : utils::first_in_order(sites, FILES_SHOWN, by_references_then_path)) {
        excerpt.shown.push_back(*site);
    }
    return excerpt;
}

}  // namespace

std::vector<Excerpt<UseSite>> uses_of_selection(const Page& page) {
    std::unordered_map<storage::SymbolId, std::vector<UseSite>> sites;
    for (const storage::ScopeSymbol* const symbol : page.selection) {
        sites[symbol->id];
    }
    for_each_use(page, [&](const InboundReference& reference, const std::optional<std::int32_t>& line) {
        if (const auto of_target = sites.find(reference.target_id); of_target != sites.end()) {
            add_use(of_target->second, reference, line);
        }
    });
    std::vector<Excerpt<UseSite>> uses;
    uses.reserve(page.selection.size());
    for (const storage::ScopeSymbol* const symbol : page.selection) {
        uses.push_back(first_of(sites[symbol->id]));
    }
    return uses;
}

std::vector<std::optional<std::int32_t>> first_uses(const Page& page,
                                                    const std::vector<wiki::scope::Consumer>& consumers) {
    models::OrderedMap<Text, std::optional<std::int32_t>> lines;
    for (const wiki::scope::Consumer& consumer : consumers) {
        lines[consumer.path];
    }
    std::optional<std::int32_t>* of_source = nullptr;
    const Text* source = nullptr;
    for_each_use(page, [&](const InboundReference& reference, const std::optional<std::int32_t>& line) {
        if (source == nullptr || !source->same_buffer(reference.source_path)) {
            source = &reference.source_path;
            of_source = lines.contains(*source) ? &lines[*source] : nullptr;
        }
        if (of_source != nullptr) {
            add_line(*of_source, line);
        }
    });
    std::vector<std::optional<std::int32_t>> first;
    first.reserve(consumers.size());
    for (const wiki::scope::Consumer& consumer : consumers) {
        first.push_back(lines[consumer.path]);
    }
    return first;
}

}  // namespace host
