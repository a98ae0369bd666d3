#include "host/page/page_json.h"

#include "host/page/descriptions.h"
#include "host/page/file_cards.h"
#include "host/page/flowchart.h"
#include "host/page/outline.h"
#include "host/text/json_writer.h"
#include "workers/wiki/scope/render.h"
#include "workers/wiki/scope_tests.h"

#include <algorithm>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace host {

namespace {

using models::OrderedMap;
using models::Text;
using models::TextSet;
using wiki::scope::InboundReference;
using wiki::scope::OutboundReference;
using wiki::scope::ScopeFile;
using wiki::scope::ScopeSymbol;
using wiki::scope::SymbolId;

Json to_json(const Text& text) {
    return text.view();
}

template <class Number>
requires std::is_arithmetic_v<Number> Json to_json(Number number) {
    return number;
}

Json to_json(const TextSet& texts) {
    return std::set<std::string_view>(texts.begin(), texts.end());
}

Json to_json(const std::vector<Text>& texts) {
    return std::vector<std::string_view>(texts.begin(), texts.end());
}

Json to_json(const ScopeFile& file) {
    return {
        {"id", file.id}, {"path", to_json(file.path)}, {"language", file.language ? to_json(*file.language) : Json()}};
}

Json to_json(const ScopeSymbol& symbol) {
    return {{"id", symbol.id},
            {"path", to_json(symbol.path)},
            {"name", to_json(symbol.name)},
            {"kind", to_json(symbol.kind)},
            {"is_export", symbol.is_export},
            {"start_line", symbol.start_line},
            {"end_line", symbol.end_line},
            {"fqn", to_json(symbol.fqn)}};
}

Json to_json(const InboundReference& reference) {
    return {{"source_path", to_json(reference.source_path)},
            {"target_id", reference.target_id},
            {"target_path", to_json(reference.target_path)},
            {"target_name", to_json(reference.target_name)},
            {"target_kind", to_json(reference.target_kind)},
            {"resolution", to_json(reference.resolution)},
            {"refs", reference.refs}};
}

Json to_json(const OutboundReference& reference) {
    return {{"source_path", to_json(reference.source_path)},
            {"target", to_json(reference.target)},
            {"resolution", to_json(reference.resolution)},
            {"refs", reference.refs}};
}

Json to_json(const wiki::scope::LineRange& range) {
    return {range.first, range.last};
}

Json to_json(const std::vector<const ScopeSymbol*>& symbols) {
    Json ids = Json::array();
    for (const ScopeSymbol* symbol : symbols) {
        ids.push_back(symbol->id);
    }
    return ids;
}

Json to_json(const wiki::scope::RankKey& key) {
    return {key.is_internal, key.kind_group, key.is_private, key.outside, key.size, key.inside, key.start_line};
}

Json to_json(const wiki::scope::NamedPath& named) {
    return {named.name.view(), named.path.view()};
}

Json to_json(const wiki::scope::Neighbour& neighbour) {
    return {{"target", to_json(*neighbour.target)}, {"refs", neighbour.refs}};
}

Json to_json(const PageOptions& options) {
    return {{"total", options.total},
            {"floor", options.floor},
            {"max_share", options.max_share},
            {"deep", options.deep},
            {"deep_per_file", options.deep_per_file},
            {"neighbours", options.neighbours}};
}

std::string key_text(const Text& key) {
    return std::string(key);
}

std::string key_text(SymbolId key) {
    return std::to_string(key);
}

template <class Elements>
void write_array(JsonWriter& json, std::string_view key, const Elements& elements) {
    json.array(key, [&] {
        for (const auto& element : elements) {
            json.element(to_json(element));
        }
    });
}

template <class Key, class Value>
void write_mapping(JsonWriter& json, std::string_view name, const OrderedMap<Key, Value>& mapping) {
    json.object(name, [&] {
        for (const auto& [key, value] : mapping) {
            json.member(key_text(key), to_json(value));
        }
    });
}

void write_facts(JsonWriter& json, const wiki::scope::ScopeFacts& facts) {
    write_array(json, "files", facts.files);
    write_array(json, "symbols", facts.symbols);
    write_array(json, "inbound", facts.inbound);
    write_array(json, "outbound", facts.outbound);
    json.member("import_resolved_paths", to_json(facts.import_resolved_paths));
    json.member("test_sources", to_json(facts.test_sources));
    write_mapping(json, "line_counts", facts.line_counts);
    write_mapping(json, "summaries", facts.summaries);
}

void write_fan_in(JsonWriter& json, const wiki::scope::FanIn& fan_in) {
    write_mapping(json, "outside", fan_in.outside);
    write_mapping(json, "inside", fan_in.inside);
    std::vector<SymbolId> entry(fan_in.entry.begin(), fan_in.entry.end());
    std::sort(entry.begin(), entry.end());
    json.member("entry", entry);
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
                    json.member(key_text(ids[place]), said);
                }
            });
        });
    }
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
            json.member(key_text(symbol.id), to_json(rank_key(symbol, page.fan_in)));
        }
    });
}

void write_name_matches(JsonWriter& json, const wiki::scope::ScopeFacts& facts) {
    json.array("name_matches", [&] {
        for (const auto& [files, references] : name_match_counts(facts)) {
            json.element(
                {{"source", to_json(files.source_path)}, {"target", to_json(files.target_path)}, {"refs", references}});
        }
    });
}

void write_outline(JsonWriter& json, const Page& page, storage::Database& db) {
    json.array("outline", [&] {
        for (const FileOutline& file : file_outlines(page, db)) {
            Json declarations = Json::array();
            for (const OutlinedDeclaration* const declaration : by_lines(file, file.declarations.size())) {
                const ScopeSymbol& symbol = *declaration->symbol;
                declarations.push_back({{"name", to_json(symbol.name)},
                                        {"kind", to_json(symbol.kind)},
                                        {"start_line", symbol.start_line},
                                        {"end_line", symbol.end_line},
                                        {"signature", declaration->signature}});
            }
            json.element({{"path", to_json(file.path)},
                          {"lines", file.lines ? Json(*file.lines) : Json()},
                          {"declarations", std::move(declarations)}});
        }
    });
}

void write_section(JsonWriter& json, Section section, const Page& page, storage::Database& db) {
    switch (section) {
    case Section::FILES:
        write_mapping(json, "tests_by_file", wiki::tests_reaching(page.facts).tests_by_file);
        json.member("file_cards", file_table(wiki::scope::file_cards(page.facts, page.fan_in, page.missing)));
        break;
    case Section::CONSUMERS:
        write_file_users(json, page.facts);
        json.member("consumers", render_consumers(page.facts, page.fan_in, "## Consumers"));
        break;
    case Section::DECLARATIONS:  // and what their ids stand for
        json.object("facts", [&] { write_facts(json, page.facts); });
        write_descriptions(json, page, db);
        json.object("fan_in", [&] { write_fan_in(json, page.fan_in); });
        write_mapping(json, "ranked", page.ranked);
        write_rank_keys(json, page);
        json.member("selection", to_json(page.selection));
        break;
    case Section::IN_DEPTH:
        write_array(json, "scored", page.scored);
        json.member("deep", to_json(page.deep));
        break;
    case Section::DEPENDENCIES:
        write_array(json, "neighbours", page.neighbours);
        write_name_matches(json, page.facts);
        break;
    case Section::GRAPH:
        json.member("graph", flowchart(page).source);
        break;
    case Section::SEEDS:
        write_mapping(json, "seeds", file_seeds(page.facts, page.fan_in));
        break;
    case Section::OUTLINE:
        write_outline(json, page, db);
        break;
    }
}

}  // namespace

void write_json(std::ostream& out, const Page& page, storage::Database& db, const SectionChoice& only) {
    JsonWriter json(out);
    json.document([&] {
        json.member("missing", page.missing);
        json.member("options", to_json(page.options));
        for (const Section section : SECTIONS) {
            if (only.contains(section)) {
                write_section(json, section, page, db);
            }
        }
    });
    out << '\n';
}

}  // namespace host
