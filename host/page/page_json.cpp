#include "host/page/page_json.h"

#include "host/page/records_json.h"
#include "host/text/json_writer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
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

void write_facts(JsonWriter& json, const wiki::scope::ScopeFacts& facts, const PageValues& values) {
    write_array(json, "files", facts.files);
    write_array(json, "symbols", facts.symbols);
    write_array(json, "inbound", facts.inbound);
    write_array(json, "outbound", facts.outbound);
    write(json.member("import_resolved_paths"), values.import_resolved_paths);
    write(json.member("test_sources"), values.test_sources);
    write_mapping(json, "line_counts", facts.line_counts);
    write_mapping(json, "summaries", facts.summaries);
}

void write_fan_in(JsonWriter& json, const wiki::scope::FanIn& fan_in, const PageValues& values) {
    write_mapping(json, "outside", fan_in.outside);
    write_mapping(json, "inside", fan_in.inside);
    write(json.member("entry"), values.entry);
}

// Of each declaration one of the texts, if it has that.
void write_descriptions(JsonWriter& json, std::string_view key, const PageValues& values,
                        std::string Description::*text) {
    json.object(key, [&] {
        for (const Description& description : values.descriptions) {
            if (const std::string& said = description.*text; !said.empty()) {
                json.member(key_text(description.declaration)).value(said);
            }
        }
    });
}

void write_uses(JsonWriter& json, const Page& page, const PageValues& values) {
    json.object("uses", [&] {
        for (std::size_t place = 0; place < values.uses.size(); ++place) {
            write(json.member(key_text(page.selection[place]->id)), values.uses[place]);
        }
    });
}

void write_file_users(JsonWriter& json, const wiki::scope::FileUsers& file_users) {
    json.object("file_users", [&] {
        for (const auto& [target, users] : file_users) {
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

void write_name_matches(JsonWriter& json, const PageValues& values) {
    json.array("name_matches", [&] {
        for (const auto& [files, references] : values.name_matches) {
            JsonValue& element = json.element();
            element.object([&, &files = files, references = references] {
                element.member("source").value(files.source_path);
                element.member("target").value(files.target_path);
                element.member("refs").value(references);
            });
        }
    });
}

void write_first_uses(JsonWriter& json, const PageValues& values) {
    json.object("first_uses", [&] {
        for (std::size_t at = 0; at < values.first_uses.size(); ++at) {
            if (const std::optional<std::int32_t> line = values.first_uses[at]) {
                json.member(values.consumers.files.shown[at].path).value(*line);
            }
        }
    });
}

void write_section(JsonWriter& json, Section section, const Page& page, const PageValues& values) {
    switch (section) {
    case Section::FILES:
        write_mapping(json, "tests_by_file", values.tests_by_file);
        write_array(json, "file_cards", values.file_cards);
        json.member("file_cards_text").value(values.file_cards_text);
        break;
    case Section::CONSUMERS:
        write_file_users(json, values.file_users);
        write(json.member("consumers"), values.consumers);
        write_first_uses(json, values);
        json.member("consumers_text").value(values.consumers_text);
        break;
    case Section::DECLARATIONS:  // and what their ids stand for
        json.object("facts", [&] { write_facts(json, page.facts, values); });
        write_descriptions(json, "signatures", values, &Description::signature);
        write_descriptions(json, "documentation", values, &Description::documentation);
        json.object("fan_in", [&] { write_fan_in(json, page.fan_in, values); });
        write_mapping(json, "ranked", page.ranked);
        write_rank_keys(json, page);
        write(json.member("selection"), page.selection);
        write_uses(json, page, values);
        break;
    case Section::IN_DEPTH:
        write_array(json, "scored", page.scored);
        write(json.member("deep"), page.deep);
        break;
    case Section::DEPENDENCIES:
        write_array(json, "neighbours", page.neighbours);
        write_name_matches(json, values);
        break;
    case Section::GRAPH:
        json.member("graph").value(values.graph);
        break;
    case Section::SEEDS:
        write_mapping(json, "seeds", values.seeds);
        break;
    case Section::OUTLINE:
        write_array(json, "outline", values.outline);
        break;
    }
}

}  // namespace

void write_json(std::ostream& out, const Page& page, const PageValues& values, const SectionChoice& sections,
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
            if (sections.contains(section)) {
                write_section(json, section, page, values);
            }
        }
    });
}

}  // namespace host
