#include "host/page/page_values.h"

#include "host/page/descriptions.h"
#include "host/page/file_cards.h"
#include "host/page/flowchart.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>

namespace host {

namespace {

using storage::ScopeSymbol;
using storage::SymbolId;

template <class Value, class Values>
std::vector<Value> sorted(const Values& values) {
    std::vector<Value> sorted(values.begin(), values.end());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

std::vector<Description> descriptions_of(const Page& page, storage::Database& db) {
    std::vector<SymbolId> ids(page.facts.symbols.size());
    std::ranges::transform(page.facts.symbols, ids.begin(), &ScopeSymbol::id);
    std::vector<Description> descriptions;
    read_descriptions(db, ids, [&](std::size_t place, const DescriptionRow& row) {
        if (!row.signature.empty() || !row.documentation.empty()) {
            descriptions.push_back({ids[place], std::string(row.signature), std::string(row.documentation)});
        }
    });
    return descriptions;
}

void add_section(PageValues& values, Section section, const Page& page, storage::Database& db) {
    switch (section) {
    case Section::FILES:
        values.tests_by_file = wiki::tests_reaching(page.facts).tests_by_file;
        values.file_cards = wiki::scope::file_cards(page.facts, page.fan_in, page.missing);
        values.file_cards_text = file_table(values.file_cards);
        break;
    case Section::CONSUMERS:
        values.file_users = wiki::scope::file_users(page.facts);
        values.consumers = consumers_of(page);
        values.first_uses = first_uses(page, values.consumers.files.shown);
        values.consumers_text = render_consumers(values.consumers, "## Consumers");
        break;
    case Section::DECLARATIONS:
        values.import_resolved_paths = sorted<std::string_view>(page.facts.import_resolved_paths);
        values.test_sources = sorted<std::string_view>(page.facts.test_sources);
        values.descriptions = descriptions_of(page, db);
        values.entry = sorted<SymbolId>(page.fan_in.entry);
        values.uses = uses_of_selection(page);
        break;
    case Section::IN_DEPTH:
        break;
    case Section::DEPENDENCIES:
        values.name_matches = name_match_counts(page.facts);
        break;
    case Section::GRAPH:
        values.graph = flowchart(page).source;
        break;
    case Section::SEEDS:
        values.seeds = file_seeds(page.facts, page.fan_in);
        break;
    case Section::OUTLINE:
        values.outline = file_outlines(page, db);
        break;
    }
}

}  // namespace

PageValues page_values(const Page& page, storage::Database& db, const SectionChoice& sections) {
    PageValues values;
    for (const Section section : SECTIONS) {
        if (sections.contains(section)) {
            add_section(values, section, page, db);
        }
    }
    return values;
}

}  // namespace host
