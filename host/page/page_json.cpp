#include "host/page/page_json.h"

#include "host/page/descriptions.h"
#include "host/page/file_cards.h"
#include "host/page/flowchart.h"
#include "host/page/outline.h"
#include "host/page/records_json.h"
#include "host/page/use_sites.h"
#include "host/text/json_writer.h"
#include "workers/wiki/scope/render.h"
#include "workers/wiki/scope_tests.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

namespace {

using models::OrderedMap;
using models::Text;
using wiki::scope::ScopeSymbol;
using wiki::scope::SymbolId;

// Of declarations that are written elsewhere.
void write(JsonValue& json, const std::vector<const ScopeSymbol*>& symbols) {
    json.array([&] {
        for (const ScopeSymbol* const symbol : symbols) {
            json.value(symbol->id);
        }
    });
}

std::string_view key_text(const Text& key) {
    return key;
}

std::string key_text(SymbolId key) {
    return std::to_string(key);
}

template <class Elements>
void write_array(JsonWriter& json, std::string_view key, const Elements& elements) {
    json.array(key, [&] {
        for (const auto& element : elements) {
            write(json.element(), element);
        }
    });
}

template <class Key, class Value>
void write_mapping(JsonWriter& json, std::string_view name, const OrderedMap<Key, Value>& mapping) {
    json.object(name, [&] {
        for (const auto& [key, value] : mapping) {
            write(json.member(key_text(key)), value);
        }
    });
}

void write_facts(JsonWriter& json, const wiki::scope::ScopeFacts& facts) {
    write_array(json, "files", facts.files);
    write_array(json, "symbols", facts.symbols);
    write_array(json, "inbound", facts.inbound);
    write_array(json, "outbound", facts.outbound);
    write(json.member("import_resolved_paths"), facts.import_resolved_paths);
    write(json.member("test_sources"), facts.test_sources);
    write_mapping(json, "line_counts", facts.line_counts);
    write_mapping(json, "summaries", facts.summaries);
}

void write_fan_in(JsonWriter& json, const wiki::scope::FanIn& fan_in) {
    write_mapping(json, "outside", fan_in.outside);
    write_mapping(json, "inside", fan_in.inside);
    std::vector<SymbolId> entry(fan_in.entry.begin(), fan_in.entry.end());
    std::sort(entry.begin(), entry.end());
    write(json.member("entry"), entry);
}

// The texts that the index has of the page's declarations, those that are empty left out.
void write_descriptions(JsonWriter& json, const Page& page, storage::Database& db) {
    std::vector<SymbolId> ids(page.facts.symbols.size());
    std::ranges::transform(page.facts.symbols, ids.begin(), &ScopeSymbol::id);
    for (const auto& [key, text] : {std::pair("signatures", &DescriptionRow::signature),
                                    std::pair("documentation", &DescriptionRow::documentation)}) {
        json.object(key, [&, text = text] {
            read_descriptions(db, ids, [&](std::size_t place, const DescriptionRow& description) {
                if (const std::string_view said = description.*text; !said.empty()) {
                    json.member(key_text(ids[place])).value(said);
                }
            });
        });
    }
}

void write_uses(JsonWriter& json, const Page& page) {
    json.object("uses", [&] {
        const std::vector<models::Excerpt<UseSite>> uses = uses_of_selection(page);
        for (std::size_t place = 0; place < uses.size(); ++place) {
            write(json.member(key_text(page.selection[place]->id)), uses[place]);
        }
    });
}

void write_file_users(JsonWriter& json, const wiki::scope::ScopeFacts& facts) {
    json.object("file_users", [&] {
        for (const auto& [target, users] : wiki::scope::file_users(facts)) {
            write_mapping(json, target, users);
        }
    });
}

void write_rank_keys(JsonWriter& json, const Page& page) {
    json.object("rank_keys", [&] {
        for (const ScopeSymbol& symbol : page.facts.symbols) {
            write(json.member(key_text(symbol.id)), rank_key(symbol, page.fan_in));
        }
    });
}

void write_name_matches(JsonWriter& json, const wiki::scope::ScopeFacts& facts) {
    json.array("name_matches", [&] {
        for (const auto& [files, references] : name_match_counts(facts)) {
            JsonValue& element = json.element();
            element.object([&, &files = files, references = references] {
                element.member("source").value(files.source_path);
                element.member("target").value(files.target_path);
                element.member("refs").value(references);
            });
        }
    });
}

void write_file_cards(JsonWriter& json, const Page& page) {
    const std::vector<wiki::scope::FileCard> cards = wiki::scope::file_cards(page.facts, page.fan_in, page.missing);
    write_array(json, "file_cards", cards);
    json.member("file_cards_text").value(file_table(cards));
}

void write_consumers(JsonWriter& json, const Page& page) {
    const wiki::scope::Consumers consumers = consumers_of(page);
    write(json.member("consumers"), consumers);
    json.object("first_uses", [&] {
        const std::vector<std::optional<std::int32_t>> lines = first_uses(page, consumers.files.shown);
        for (std::size_t at = 0; at < lines.size(); ++at) {
            if (lines[at]) {
                json.member(consumers.files.shown[at].path).value(*lines[at]);
            }
        }
    });
    json.member("consumers_text").value(render_consumers(consumers, "## Consumers"));
}

void write_section(JsonWriter& json, Section section, const Page& page, storage::Database& db) {
    switch (section) {
    case Section::FILES:
        write_mapping(json, "tests_by_file", wiki::tests_reaching(page.facts).tests_by_file);
        write_file_cards(json, page);
        break;
    case Section::CONSUMERS:
        write_file_users(json, page.facts);
        write_consumers(json, page);
        break;
    case Section::DECLARATIONS:  // and what their ids stand for
        json.object("facts", [&] { write_facts(json, page.facts); });
        write_descriptions(json, page, db);
        json.object("fan_in", [&] { write_fan_in(json, page.fan_in); });
        write_mapping(json, "ranked", page.ranked);
        write_rank_keys(json, page);
        write(json.member("selection"), page.selection);
        write_uses(json, page);
        break;
    case Section::IN_DEPTH:
        write_array(json, "scored", page.scored);
        write(json.member("deep"), page.deep);
        break;
    case Section::DEPENDENCIES:
        write_array(json, "neighbours", page.neighbours);
        write_name_matches(json, page.facts);
        break;
    case Section::GRAPH:
        json.member("graph").value(flowchart(page).source);
        break;
    case Section::SEEDS:
        write_mapping(json, "seeds", file_seeds(page.facts, page.fan_in));
        break;
    case Section::OUTLINE:
        write_array(json, "outline", file_outlines(page, db));
        break;
    }
}

}  // namespace

void write_json(std::ostream& out, const Page& page, storage::Database& db, const SectionChoice& only,
                const PageHead& head) {
    JsonWriter json(out);
    json.document([&] {
        if (!head.title.empty()) {
            json.member("stamp").value(head.stamp);
            json.member("title").value(head.title);
        }
        write(json.member("missing"), page.missing);
        write(json.member("options"), page.options);
        for (const Section section : SECTIONS) {
            if (only.contains(section)) {
                write_section(json, section, page, db);
            }
        }
    });
}

}  // namespace host
