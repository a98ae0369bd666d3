#include "embedded/page_markdown.h"

#include "embedded/counted.h"
#include "embedded/markdown_text.h"
#include "workers/wiki/scope/ordered_map.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <array>
#include <optional>
#include <ostream>
#include <span>
#include <utility>
#include <vector>

namespace embedded {

namespace {

using models::Text;
using storage::ScopeFile;
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

// The source of the page's declarations. A selection goes back and forth between the files, so the lines of each file
// that has a declaration in it are read once and kept.
class Sources {
  public:
    Sources(std::span<const ScopeFile> files, const Checkout& checkout) : checkout_(checkout) {
        for (const ScopeFile& file : files) {
            files_[file.path].language = file.language.value_or(Text());
        }
    }

    // The declaration's lines as a fenced block; none when they are not in the checkout.
    std::optional<std::string> block(const ScopeSymbol& symbol) {
        const std::optional<LineRange> range = lines_of(symbol);
        const Source& source = read(symbol.path);
        if (!range || std::cmp_greater(range->first, source.lines->size())) {
            return std::nullopt;
        }
        const auto first = static_cast<std::size_t>(range->first - 1);
        const std::size_t last = std::min(static_cast<std::size_t>(range->last), source.lines->size());
        return fenced_block(std::span(*source.lines).subspan(first, last - first), source.language);
    }

  private:
    struct Source {
        Text language;               // empty when unknown
        std::optional<Lines> lines;  // once read
    };

    const Source& read(const Text& path) {
        Source& source = files_[path];
        if (!source.lines) {
            source.lines = checkout_.read_lines(path).value_or(Lines());
        }
        return source;
    }

    const Checkout& checkout_;
    wiki::scope::OrderedMap<Text, Source> files_;
};

void write_declarations(std::ostream& out, const Page& page, const Checkout& checkout, bool with_source) {
    out << "## Declarations\n\n"
           "The declarations of this page that matter most, every file represented: what production code outside "
           "the page uses and its entry points first.\n";
    Sources sources(page.facts.files, checkout);
    for (const ScopeSymbol* symbol : page.selection) {
        out << "\n### " << code_span(symbol->name) << "\n\n"
            << plain_text(symbol->kind) << ", " << code_span(citation(symbol->path, lines_of(*symbol))) << ", "
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
           "The declarations of other production files that this page uses most, by the references it makes to them.\n"
           "\n"
           "| Declaration | Kind | File | References |\n"
           "|---|---|---|---|\n";
    for (const auto& [target, references] : page.neighbours) {
        out << "| " << code_cell(target->name) << " | " << plain_text(target->kind) << " | "
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
