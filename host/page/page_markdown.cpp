#include "host/page/page_markdown.h"

#include "host/page/budget.h"
#include "host/page/citation.h"
#include "host/page/declaration_blocks.h"
#include "host/page/file_cards.h"
#include "host/page/flowchart.h"
#include "host/page/outline.h"
#include "host/page/passage.h"
#include "host/text/markdown_text.h"
#include "host/text/split_lines.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <ostream>
#include <utility>
#include <vector>

namespace host {

namespace {

using models::Text;

std::string heading(std::string_view name) {
    return "## " + std::string(name) + "\n";
}

// What stands below a heading where there is nothing to list.
constexpr const char* NOTHING = "\nNone listed.\n";

Passage files(const Page& page) {
    Passage passage{.heading = heading("Files"),
                    .sentence = "\n" + std::string(wiki::scope::FILE_CARDS_EXPLANATION) + "\n",
                    .table_head = std::string(wiki::scope::FILE_CARDS_HEAD),
                    .item_name = "file",
                    .rank = Passage::Rank::FILE_BY_FILE};
    for (const wiki::scope::FileCard& card : wiki::scope::file_cards(page.facts, page.fan_in, page.missing)) {
        passage.items.push_back({file_row(card)});
    }
    return passage;
}

// Who uses the page, and what is known of who does not.
std::vector<Passage> consumers(const Page& page) {
    const wiki::scope::Consumers found = wiki::scope::consumers(page.facts, page.fan_in);
    const wiki::scope::ConsumersText text = wiki::scope::consumers_text(found);
    Passage users{
        .heading = heading("Consumers"), .after = text.more_consumers, .item_name = "consumer", .is_bulleted = true};
    for (const std::string& line : text.consumers) {
        users.items.push_back({line});
    }
    // That the uses are likely alone is never left out.
    const bool is_certain = users.items.empty() || found.unresolved_languages.empty();
    (is_certain ? users.sentence : users.table_head) = "\n" + text.explanation;
    Passage notes{.item_name = "note"};
    for (const std::string& line : text.notes) {
        notes.items.push_back({line});
    }
    return {users, notes};
}

Passage declarations(const DeclarationBlocks& blocks) {
    Passage passage{.heading = heading("Declarations"), .items = blocks.blocks(0), .item_name = "declaration"};
    if (passage.items.empty()) {
        passage.heading += NOTHING;
        return passage;
    }
    passage.sentence = "\nThe declarations of this page that matter most, every file represented: what production code "
                       "outside the page uses and its entry points first.\n";
    passage.steps = blocks.steps();
    passage.shortened = [&blocks](std::size_t steps) { return blocks.blocks(steps); };
    return passage;
}

Passage in_depth(const Page& page) {
    Passage passage{.heading = heading("In depth"), .item_name = "name", .is_bulleted = true};
    for (const Text& name : page.deep) {
        passage.items.push_back({"- " + code_span(name) + "\n"});
    }
    (passage.items.empty() ? passage.heading : passage.sentence) +=
        passage.items.empty() ? NOTHING
                              : "\nThe callables and types that deserve a deeper treatment, spread over the files.\n\n";
    return passage;
}

Passage dependencies(const Page& page) {
    Passage passage{.heading = heading("Dependencies"), .item_name = "declaration"};
    if (page.neighbours.empty()) {
        passage.heading += NOTHING;
        return passage;
    }
    passage.sentence =
        "\nThe declarations of other production files that this page uses most, by the references it makes "
        "to them.\n";
    passage.table_head = "\n| Declaration | Kind | File | References |\n"
                         "|---|---|---|---|\n";
    for (const auto& [target, references] : page.neighbours) {
        passage.items.push_back({"| " + code_cell(target->name) + " | " + plain_cell(target->kind) + " | " +
                                 code_cell(citation(target->path, cited_lines(*target))) + " | " +
                                 std::to_string(references) + " |\n"});
    }
    return passage;
}

// None where there are no such references.
std::vector<Passage> name_matches(const Page& page) {
    const auto matches = name_match_counts(page.facts);
    if (matches.empty()) {
        return {};
    }
    Passage passage{.heading =
                        "\nReferences that only match the name of an attribute or a constant, and prove no use.\n",
                    .table_head = "\n| Source | Target | References |\n"
                                  "|---|---|---|\n",
                    .item_name = "such pair"};
    for (const auto& [files, references] : matches) {
        passage.items.push_back({"| " + code_cell(files.source_path) + " | " + code_cell(files.target_path) + " | " +
                                 std::to_string(references) + " |\n"});
    }
    return {passage};
}

Passage graph(const Page& page) {
    Passage passage{.heading = heading("Graph"), .item_name = "flowchart"};
    const Flowchart chart = flowchart(page);
    if (chart.source.empty()) {
        passage.heading += NOTHING;
        return passage;
    }
    const std::string files = chart.has_every_file ? "its own" : "those of its own that others use most";
    passage.sentence = "\nThe files that use this page most, " + files +
                       ", and the declarations that it leans on most; an arrow bears the number of references.\n";
    const std::vector<std::string_view> lines = split_lines(chart.source);
    passage.items.push_back({"\n" + fenced_block(std::vector<std::string>(lines.begin(), lines.end()), "mermaid")});
    return passage;
}

Passage seeds(const Page& page) {
    Passage passage{.heading = heading("Seeds"),
                    .sentence =
                        "\nOne citable range for each file: its most important declaration, or the whole file when "
                        "it has none.\n\n",
                    .item_name = "file",
                    .is_bulleted = true,
                    .rank = Passage::Rank::FILE_BY_FILE};
    for (const auto& [path, range] : file_seeds(page.facts, page.fan_in)) {
        passage.items.push_back({"- " + code_span(citation(path, range)) + "\n"});
    }
    return passage;
}

// An item for each file, in which fewer declarations stand with each step.
Passage outline(const Page& page, storage::Database& db) {
    Passage passage{.heading = heading("Outline"),
                    .sentence =
                        "\nThe declarations of each file, in the order of their lines, with their signatures.\n",
                    .item_name = "file",
                    .rank = Passage::Rank::FILE_BY_FILE};
    const auto files = std::make_shared<const std::vector<FileOutline>>(file_outlines(page, db));
    for (const FileOutline& file : *files) {
        passage.steps = std::max(passage.steps, file.declarations.size());
    }
    passage.shortened = [files, most = passage.steps, &page, &db](std::size_t steps) {
        std::vector<PassageItem> items;
        for (const FileOutline& file : *files) {
            db.check_interrupt();
            items.push_back({outline_block(file, most - steps)});
        }
        for (const std::string& path : page.missing) {
            items.push_back({"\n### " + code_span(path) + "\n\nNot in the index.\n"});
        }
        return items;
    };
    passage.items = passage.shortened(0);
    return passage;
}

std::vector<Passage> passages_of(Section section, const Page& page, const DeclarationBlocks& blocks,
                                 storage::Database& db) {
    switch (section) {
    case Section::FILES:
        return {files(page)};
    case Section::CONSUMERS:
        return consumers(page);
    case Section::DECLARATIONS:
        return {declarations(blocks)};
    case Section::IN_DEPTH:
        return {in_depth(page)};
    case Section::DEPENDENCIES: {
        std::vector<Passage> both = name_matches(page);
        both.insert(both.begin(), dependencies(page));
        return both;
    }
    case Section::GRAPH:
        return {graph(page)};
    case Section::SEEDS:
        return {seeds(page)};
    case Section::OUTLINE:
        return {outline(page, db)};
    }
    return {};
}

}  // namespace

void write_markdown(std::ostream& out, const Page& page, storage::Database& db, const MarkdownOptions& options) {
    DeclarationBlocks blocks(page, db);
    if (options.with_source && options.only.contains(Section::DECLARATIONS)) {
        blocks.read_sources(page.sources);
    }
    std::vector<Passage> passages;
    for (const Section section : SECTIONS) {
        if (options.only.contains(section)) {
            std::vector<Passage> of_section = passages_of(section, page, blocks, db);
            of_section.front().heading.insert(0, passages.empty() ? "" : "\n");
            std::ranges::move(of_section, std::back_inserter(passages));
        }
    }
    out << fitted(std::move(passages), options.max_bytes.value_or(std::numeric_limits<std::size_t>::max()));
}

}  // namespace host
