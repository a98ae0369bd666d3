#include "embedded/page_markdown.h"

#include "embedded/markdown_text.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <array>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

namespace embedded {

namespace {

using models::Text;
using storage::ScopeSymbol;
using wiki::scope::LineRange;
using Lines = std::vector<std::string>;

struct NamedSection {
    std::string_view name;
    Section section;
};

constexpr std::array SECTIONS{
    NamedSection{"files", Section::FILES},
    NamedSection{"consumers", Section::CONSUMERS},
    NamedSection{"declarations", Section::DECLARATIONS},
    NamedSection{"in-depth", Section::IN_DEPTH},
    NamedSection{"dependencies", Section::DEPENDENCIES},
    NamedSection{"seeds", Section::SEEDS},
};

std::string counted(std::int64_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

// The lines that a citation of a declaration can name; none when the index does not know where it stands.
std::optional<LineRange> lines_of(const ScopeSymbol& symbol) {
    if (symbol.start_line < 1) {
        return std::nullopt;
    }
    return LineRange{symbol.start_line, std::max(symbol.start_line, symbol.end_line)};
}

std::string citation(std::string_view path, const std::optional<LineRange>& lines) {
    return lines ? std::string(path) + ":L" + std::to_string(lines->first) + "-L" + std::to_string(lines->last)
                 : std::string(path);
}

// Reads the source of declarations, each file once as long as one declaration follows another of the same file.
class Sources {
  public:
    Sources(const Page& page, const Checkout& checkout) : page_(page), checkout_(checkout) {}

    // The declaration's lines as a fenced block; none when they are not in the checkout.
    std::optional<std::string> block(const ScopeSymbol& symbol) {
        const std::optional<LineRange> range = lines_of(symbol);
        if (!range || std::cmp_greater(range->first, lines(symbol.path).size())) {
            return std::nullopt;
        }
        const Lines& all = lines(symbol.path);
        const auto first = static_cast<std::size_t>(range->first - 1);
        const std::size_t last = std::min(static_cast<std::size_t>(range->last), all.size());
        return fenced_block(std::span(all).subspan(first, last - first), language(symbol.path));
    }

  private:
    const Lines& lines(const Text& path) {
        const auto [lines, is_new] = read_.find_or_add(path);
        if (is_new) {
            lines = checkout_.read_lines(path).value_or(Lines());
        }
        return lines;
    }

    [[nodiscard]] std::string_view language(const Text& path) const {
        const auto file = std::find_if(page_.facts.files.begin(), page_.facts.files.end(),
                                       [&](const storage::ScopeFile& candidate) { return candidate.path == path; });
        return file == page_.facts.files.end() || !file->language ? std::string_view() : file->language->view();
    }

    const Page& page_;
    const Checkout& checkout_;
    wiki::scope::OrderedMap<Text, Lines> read_;
};

void write_declarations(std::ostream& out, const Page& page, const Checkout& checkout, bool with_source) {
    out << "## Declarations\n\n"
           "The declarations of this page that matter most, every file represented: what production code outside "
           "the page uses and its entry points first.\n";
    Sources sources(page, checkout);
    for (const ScopeSymbol* symbol : page.selection) {
        out << "\n### " << code_span(symbol->name) << "\n\n"
            << symbol->kind << ", " << code_span(citation(symbol->path, lines_of(*symbol))) << ", "
            << counted(page.fan_in.outside.get(symbol->id, 0), "use") << " outside, "
            << page.fan_in.inside.get(symbol->id, 0) << " inside\n";
        if (const auto block = with_source ? sources.block(*symbol) : std::nullopt) {
            out << '\n' << *block;
        }
    }
}

void write_in_depth(std::ostream& out, const Page& page) {
    out << "## In depth\n\n"
           "The callables and types that deserve a deeper treatment, spread over the files.\n\n";
    for (const Text& name : page.deep) {
        out << "- " << code_span(name) << '\n';
    }
}

void write_dependencies(std::ostream& out, const Page& page) {
    out << "## Dependencies\n\n"
           "The declarations of other production files that this page uses most, by the references it makes "
           "to them.\n"
           "\n"
           "| Declaration | Kind | File | References |\n"
           "|---|---|---|---|\n";
    for (const auto& [target, references] : page.neighbours) {
        out << "| " << code_cell(target->name) << " | " << code_cell(target->kind) << " | "
            << code_cell(citation(target->path, lines_of(*target))) << " | " << references << " |\n";
    }
    if (const auto matches = name_match_counts(page.facts); !matches.empty()) {
        out << "\n"
               "References that only match the name of an attribute or a constant, and prove no use.\n"
               "\n"
               "| Source | Target | References |\n"
               "|---|---|---|\n";
        for (const auto& [files, references] : matches) {
            out << "| " << code_cell(files.source_path) << " | " << code_cell(files.target_path) << " | " << references
                << " |\n";
        }
    }
}

void write_seeds(std::ostream& out, const Page& page) {
    out << "## Seeds\n\n"
           "One citable range for each file: its most important declaration, or the whole file when it has "
           "none.\n\n";
    for (const auto& [path, range] : file_seeds(page.facts, page.fan_in)) {
        out << "- " << code_span(citation(path, range)) << '\n';
    }
}

void write_section(std::ostream& out, Section section, const Page& page, const Checkout& checkout, bool with_source) {
    switch (section) {
    case Section::FILES:
        out << render_file_cards(page.facts, page.fan_in, "## Files", page.missing);
        break;
    case Section::CONSUMERS:
        out << render_consumers(page.facts, page.fan_in, "## Consumers");
        break;
    case Section::DECLARATIONS:
        write_declarations(out, page, checkout, with_source);
        break;
    case Section::IN_DEPTH:
        write_in_depth(out, page);
        break;
    case Section::DEPENDENCIES:
        write_dependencies(out, page);
        break;
    case Section::SEEDS:
        write_seeds(out, page);
        break;
    }
}

}  // namespace

std::optional<Section> section_named(std::string_view name) {
    const auto* const found = std::find_if(SECTIONS.begin(), SECTIONS.end(),
                                           [&](const NamedSection& section) { return section.name == name; });
    return found == SECTIONS.end() ? std::nullopt : std::optional(found->section);
}

std::string section_names() {
    std::string names;
    for (const NamedSection& section : SECTIONS) {
        names.append(names.empty() ? "" : ", ").append(section.name);
    }
    return names;
}

void write_markdown(std::ostream& out, const Page& page, const Checkout& checkout, const MarkdownOptions& options) {
    const char* separator = "";
    for (const auto& [name, section] : SECTIONS) {
        if (options.only.empty() || options.only.contains(section)) {
            out << separator;
            write_section(out, section, page, checkout, options.with_source);
            separator = "\n";
        }
    }
}

}  // namespace embedded
