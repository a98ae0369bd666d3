#include "embedded/page/page_markdown.h"

#include "embedded/page/budget.h"
#include "embedded/page/citation.h"
#include "embedded/page/declaration_blocks.h"
#include "embedded/page/file_cards.h"
#include "embedded/page/flowchart.h"
#include "embedded/page/passage.h"
#include "embedded/page/scoped_names.h"
#include "embedded/text/counted.h"
#include "embedded/text/markdown_text.h"
#include "embedded/text/split_lines.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace embedded {

namespace {

using models::Text;

// A list of a rendered block: the lines that begin with one of its points or rows.
Passage passage_of(const std::string& block, std::string_view item_beginning, std::string_view item_name) {
    Passage passage{.before = {}, .table_head = {}, .items = {}, .after = {}, .item_name = item_name};
    for (const std::string_view line : split_lines(block)) {
        const bool is_item = line.starts_with(item_beginning);
        const bool is_row_around = !is_item && line.starts_with("|");
        std::string& other =
            passage.items.empty() ? (is_row_around ? passage.table_head : passage.before) : passage.after;
        (is_item ? passage.items.emplace_back() : other).append(line).append("\n");
    }
    return passage;
}

std::string heading(std::string_view name, std::string_view sentence) {
    return "## " + std::string(name) + "\n\n" + std::string(sentence) + "\n";
}

// What stands below a heading where there is nothing to list.
constexpr std::string_view NOTHING = "None listed.";

Passage files(const Page& page) {
    Passage passage = passage_of(file_cards(page), "| `", "file");
    passage.rank = Passage::Rank::FILE_BY_FILE;
    return passage;
}

Passage consumers(const Page& page) {
    Passage passage = passage_of(render_consumers(page.facts, page.fan_in, "## Consumers"), "- `", "consumer");
    passage.is_bulleted = true;
    return passage;
}

// `sources` of the declarations have their source, of `wanted` that would have it if it fitted.
Passage declarations(const DeclarationBlocks& blocks, std::size_t sources, std::size_t wanted) {
    Passage passage{
        .before = heading("Declarations", NOTHING), .items = blocks.blocks(sources), .item_name = "declaration"};
    if (!passage.items.empty()) {
        passage.before =
            heading("Declarations", "The declarations of this page that matter most, every file represented: what "
                                    "production code outside the page uses and its entry points first.");
    }
    if (const std::size_t left_out = blocks.without_source(sources, wanted); left_out > 0) {
        passage.before += "\n_The source of " + counted(static_cast<std::int64_t>(left_out), "declaration") +
                          " is left out to fit._\n";
    }
    return passage;
}

Passage in_depth(const Page& page, const ScopedNames& names) {
    Passage passage{.before = heading("In depth", NOTHING), .items = {}, .item_name = "name", .is_bulleted = true};
    const PageOptions& options = page.options;
    const auto name = [&](const storage::ScopeSymbol& symbol) { return Text(names.of(symbol)); };
    const std::vector<wiki::scope::NamedPath> candidates = deep_candidates(page.selection, name);
    for (const Text& picked : wiki::scope::pick_spread(candidates, options.deep, options.deep_per_file)) {
        passage.items.push_back("- " + code_span(picked) + "\n");
    }
    if (!passage.items.empty()) {
        passage.before =
            heading("In depth", "The callables and types that deserve a deeper treatment, spread over the files.\n");
    }
    return passage;
}

Passage dependencies(const Page& page) {
    Passage passage{.before = heading("Dependencies", NOTHING), .items = {}, .item_name = "declaration"};
    if (page.neighbours.empty()) {
        return passage;
    }
    passage.before = heading("Dependencies", "The declarations of other production files that this page uses most, by "
                                             "the references it makes to them.\n");
    passage.table_head = "| Declaration | Kind | File | References |\n"
                         "|---|---|---|---|\n";
    for (const auto& [target, references] : page.neighbours) {
        passage.items.push_back("| " + code_cell(target->name) + " | " + plain_cell(target->kind) + " | " +
                                code_cell(citation(target->path, cited_lines(*target))) + " | " +
                                std::to_string(references) + " |\n");
    }
    return passage;
}

// None where there are no such references.
std::vector<Passage> name_matches(const Page& page) {
    const auto matches = name_match_counts(page.facts);
    if (matches.empty()) {
        return {};
    }
    Passage passage{.before =
                        "\nReferences that only match the name of an attribute or a constant, and prove no use.\n\n",
                    .table_head = "| Source | Target | References |\n"
                                  "|---|---|---|\n",
                    .items = {},
                    .item_name = "such pair"};
    for (const auto& [files, references] : matches) {
        passage.items.push_back("| " + code_cell(files.source_path) + " | " + code_cell(files.target_path) + " | " +
                                std::to_string(references) + " |\n");
    }
    return {passage};
}

Passage graph(const Page& page) {
    Passage passage{.before = heading("Graph", NOTHING), .items = {}, .item_name = "flowchart"};
    if (const Flowchart chart = flowchart(page); !chart.source.empty()) {
        const std::string files = chart.has_every_file ? "its own" : "those of its own that others use most";
        passage.before = heading("Graph", "The files that use this page most, " + files +
                                              ", and the declarations that it leans on most; an arrow bears the number "
                                              "of references.");
        const std::vector<std::string_view> lines = split_lines(chart.source);
        passage.items.push_back("\n" + fenced_block(std::vector<std::string>(lines.begin(), lines.end()), "mermaid"));
    }
    return passage;
}

Passage seeds(const Page& page) {
    Passage passage{.before =
                        heading("Seeds", "One citable range for each file: its most important declaration, or the "
                                         "whole file when it has none.\n"),
                    .items = {},
                    .item_name = "file",
                    .is_bulleted = true,
                    .rank = Passage::Rank::FILE_BY_FILE};
    for (const auto& [path, range] : file_seeds(page.facts, page.fan_in)) {
        passage.items.push_back("- " + code_span(citation(path, range)) + "\n");
    }
    return passage;
}

std::vector<Passage> passages_of(Section section, const Page& page, const ScopedNames& names,
                                 const DeclarationBlocks& blocks, std::size_t sources) {
    switch (section) {
    case Section::FILES:
        return {files(page)};
    case Section::CONSUMERS:
        return {consumers(page)};
    case Section::DECLARATIONS:
        return {declarations(blocks, sources, sources)};
    case Section::IN_DEPTH:
        return {in_depth(page, names)};
    case Section::DEPENDENCIES: {
        std::vector<Passage> both = name_matches(page);
        both.insert(both.begin(), dependencies(page));
        return both;
    }
    case Section::GRAPH:
        return {graph(page)};
    case Section::SEEDS:
        return {seeds(page)};
    }
    return {};
}

}  // namespace

void write_markdown(std::ostream& out, const Page& page, storage::Database& db, const MarkdownOptions& options) {
    const ScopedNames names(page.facts, page.selection);
    DeclarationBlocks blocks(page, db, names);
    const bool shows_declarations = options.only.contains(Section::DECLARATIONS);
    const std::size_t wanted = options.with_source && shows_declarations ? page.selection.size() : 0;
    if (wanted > 0) {
        blocks.read_sources(page.sources);
    }
    std::vector<Passage> passages;
    std::optional<std::size_t> declared;  // the place of the declarations
    for (const Section section : SECTIONS) {
        if (options.only.contains(section)) {
            declared = section == Section::DECLARATIONS ? passages.size() : declared;
            std::vector<Passage> of_section = passages_of(section, page, names, blocks, wanted);
            of_section.front().before.insert(0, passages.empty() ? "" : "\n");
            std::ranges::move(of_section, std::back_inserter(passages));
        }
    }
    const auto with_sources = [&](std::size_t sources) {
        if (declared) {
            Passage& replaced = passages[*declared];
            replaced = declarations(blocks, sources, wanted);
            replaced.before.insert(0, *declared > 0 ? "\n" : "");
        }
        return passages;
    };
    const std::optional<std::string> text =
        fitted(with_sources, wanted, options.max_bytes.value_or(std::numeric_limits<std::size_t>::max()));
    if (!text) {
        throw std::runtime_error("too few bytes: what would be left of the page does not fit into " +
                                 std::to_string(*options.max_bytes) + "; allow more, or fewer sections");
    }
    out << *text;
}

}  // namespace embedded
