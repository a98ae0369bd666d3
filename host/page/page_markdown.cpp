#include "host/page/page_markdown.h"

#include "host/page/budget.h"
#include "host/page/citation.h"
#include "host/page/declaration_blocks.h"
#include "host/page/file_cards.h"
#include "host/page/flowchart.h"
#include "host/page/outline_blocks.h"
#include "host/page/passage.h"
#include "host/page/use_sites.h"
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

// A section without anything to list.
Passage nothing(std::string_view name) {
    return {.heading = heading(name) + "\nNone listed.\n"};
}

std::shared_ptr<const Items> fixed(std::vector<std::string> texts) {
    return std::make_shared<FixedItems>(std::move(texts));
}

Passage files(const Page& page) {
    std::vector<std::string> rows;
    for (const wiki::scope::FileCard& card : wiki::scope::file_cards(page.facts, page.fan_in, page.missing)) {
        rows.push_back(file_row(card));
    }
    return {.heading = heading("Files"),
            .sentence = "\n" + std::string(wiki::scope::FILE_CARDS_EXPLANATION) + "\n",
            .table_head = std::string(wiki::scope::FILE_CARDS_HEAD),
            .items = fixed(std::move(rows)),
            .item_name = "file",
            .rank = Passage::Rank::FILE_BY_FILE};
}

// What follows the point of a consumer.
std::string first_use(const Text& path, const std::optional<std::int32_t>& line, const SourceLinks* links) {
    return line ? "  - first at " + cited(path, line, links) + "\n" : "";
}

// Who uses the page, and what is known of who does not.
std::vector<Passage> consumers(const Page& page, const SourceLinks* links) {
    const wiki::scope::Consumers found = consumers_of(page);
    wiki::scope::ConsumersText text = wiki::scope::consumers_text(found);
    const std::vector<std::optional<std::int32_t>> lines = first_uses(page, found.files.shown);
    for (std::size_t at = 0; at < lines.size(); ++at) {
        text.consumers[at] += first_use(found.files.shown[at].path, lines[at], links);
    }
    Passage users{.heading = heading("Consumers"),
                  .items = fixed(text.consumers),
                  .after = text.more_consumers,
                  .item_name = "consumer",
                  .is_bulleted = true};
    // That the uses are likely alone is never left out.
    const bool is_certain = text.consumers.empty() || found.unresolved_languages.empty();
    (is_certain ? users.sentence : users.table_head) = "\n" + text.explanation;
    return {users, {.items = fixed(text.notes), .item_name = "note"}};
}

Passage declarations(const Page& page, storage::Database& db, bool with_source, const SourceLinks* links) {
    if (page.selection.empty()) {
        return nothing("Declarations");
    }
    return {.heading = heading("Declarations"),
            .sentence =
                "\nThe declarations of this page that matter most, every file represented: what production code "
                "outside the page uses and its entry points first.\n",
            .items = std::make_shared<DeclarationBlocks>(page, db, with_source, links),
            .item_name = "declaration"};
}

Passage in_depth(const Page& page) {
    if (page.deep.empty()) {
        return nothing("In depth");
    }
    std::vector<std::string> points;
    for (const Text& name : page.deep) {
        points.push_back("- " + code_span(name) + "\n");
    }
    return {.heading = heading("In depth"),
            .sentence = "\nThe callables and types that deserve a deeper treatment, spread over the files.\n\n",
            .items = fixed(std::move(points)),
            .item_name = "name",
            .is_bulleted = true};
}

Passage neighbours(const Page& page, const SourceLinks* links) {
    if (page.neighbours.empty()) {
        return nothing("Dependencies");
    }
    std::vector<std::string> rows;
    for (const auto& [target, references] : page.neighbours) {
        rows.push_back("| " + code_cell(target->name) + " | " + plain_cell(target->kind) + " | " +
                       cited_in_cell(target->path, cited_lines(*target), links) + " | " + std::to_string(references) +
                       " |\n");
    }
    return {.heading = heading("Dependencies"),
            .sentence = "\nThe declarations of other production files that this page uses most, by the references it "
                        "makes to them.\n",
            .table_head = "\n| Declaration | Kind | File | References |\n"
                          "|---|---|---|---|\n",
            .items = fixed(std::move(rows)),
            .item_name = "declaration"};
}

// What the page leans on and, where there are such references, what only looks so.
std::vector<Passage> dependencies(const Page& page, const SourceLinks* links) {
    const auto matches = name_match_counts(page.facts);
    if (matches.empty()) {
        return {neighbours(page, links)};
    }
    std::vector<std::string> rows;
    for (const auto& [files, references] : matches) {
        rows.push_back("| " + code_cell(files.source_path) + " | " + code_cell(files.target_path) + " | " +
                       std::to_string(references) + " |\n");
    }
    return {neighbours(page, links),
            {.heading = "\nReferences that only match the name of an attribute or a constant, and prove no use.\n",
             .table_head = "\n| Source | Target | References |\n"
                           "|---|---|---|\n",
             .items = fixed(std::move(rows)),
             .item_name = "such pair"}};
}

Passage graph(const Page& page) {
    const Flowchart chart = flowchart(page);
    if (chart.source.empty()) {
        return nothing("Graph");
    }
    const std::string files = chart.has_every_file ? "its own" : "those of its own that others use most";
    const std::vector<std::string_view> lines = split_lines(chart.source);
    return {.heading = heading("Graph"),
            .sentence = "\nThe files that use this page most, " + files +
                        ", and the declarations that it leans on most; an arrow bears the number of references.\n",
            .items = fixed({"\n" + fenced_block(std::vector<std::string>(lines.begin(), lines.end()), "mermaid")}),
            .item_name = "flowchart"};
}

Passage seeds(const Page& page, const SourceLinks* links) {
    std::vector<std::string> points;
    for (const auto& [path, range] : file_seeds(page.facts, page.fan_in)) {
        points.push_back("- " + cited(path, range, links) + "\n");
    }
    return {.heading = heading("Seeds"),
            .sentence = "\nOne citable range for each file: its most important declaration, or the whole file when "
                        "it has none.\n\n",
            .items = fixed(std::move(points)),
            .item_name = "file",
            .is_bulleted = true,
            .rank = Passage::Rank::FILE_BY_FILE};
}

Passage outline(const Page& page, storage::Database& db) {
    return {.heading = heading("Outline"),
            .sentence = "\nThe declarations of each file, in the order of their lines, with their signatures.\n",
            .items = std::make_shared<OutlineBlocks>(page, db),
            .item_name = "file",
            .rank = Passage::Rank::FILE_BY_FILE};
}

std::vector<Passage> passages_of(Section section, const Page& page, storage::Database& db,
                                 const MarkdownOptions& options) {
    switch (section) {
    case Section::FILES:
        return {files(page)};
    case Section::CONSUMERS:
        return consumers(page, options.links);
    case Section::DECLARATIONS:
        return {declarations(page, db, options.with_source, options.links)};
    case Section::IN_DEPTH:
        return {in_depth(page)};
    case Section::DEPENDENCIES:
        return dependencies(page, options.links);
    case Section::GRAPH:
        return {graph(page)};
    case Section::SEEDS:
        return {seeds(page, options.links)};
    case Section::OUTLINE:
        return {outline(page, db)};
    }
    return {};
}

std::string head_of(const PageHead& head) {
    return head.title.empty() ? "" : "<!-- " + head.stamp + " -->\n\n# " + plain_text(head.title) + "\n\n";
}

}  // namespace

void write_markdown(std::ostream& out, const Page& page, storage::Database& db, const MarkdownOptions& options) {
    std::vector<Passage> passages;
    for (const Section section : SECTIONS) {
        if (options.only.contains(section)) {
            std::vector<Passage> of_section = passages_of(section, page, db, options);
            of_section.front().heading.insert(0, passages.empty() ? head_of(options.head) : "\n");
            std::ranges::move(of_section, std::back_inserter(passages));
        }
    }
    out << fitted(std::move(passages), options.max_bytes.value_or(std::numeric_limits<std::size_t>::max()));
}

}  // namespace host
