#include "embedded/page/page_markdown.h"

#include "embedded/page/doc_comment.h"
#include "embedded/sqlite/descriptions.h"
#include "embedded/text/counted.h"
#include "embedded/text/markdown_text.h"
#include "embedded/text/split_lines.h"
#include "models/ordered_map.h"
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
std::optional<LineRange> cited_lines(const ScopeSymbol& symbol) {
    if (symbol.start_line < 1) {
        return std::nullopt;
    }
    return LineRange{symbol.start_line, std::max(symbol.start_line, symbol.end_line)};
}

std::string citation(std::string_view path, const std::optional<LineRange>& lines) {
    return lines ? std::string(path) + ":L" + std::to_string(lines->first) + "-L" + std::to_string(lines->last)
                 : std::string(path);
}

// The blocks of the selected declarations. A selection goes back and forth between the files, so the lines of each
// file that has a declaration in it are read once and kept.
class Blocks {
  public:
    Blocks(const Page& page, const storage::Database& db, const Checkout& checkout, bool with_source)
        : page_(page), checkout_(checkout), with_source_(with_source), descriptions_(db) {
        for (const ScopeFile& file : page.facts.files) {
            files_[file.path].language = file.language.value_or(Text());
        }
    }

    void write(std::ostream& out, const ScopeSymbol& symbol) {
        const Description description = descriptions_.of(symbol.id);
        const Lines code = with_source_ ? source(symbol) : signature(description);
        out << "\n### " << code_span(symbol.name) << "\n\n"
            << plain_text(symbol.kind) << ", " << code_span(citation(symbol.path, cited_lines(symbol))) << ", "
            << counted(page_.fan_in.outside.get(symbol.id, 0), "use") << " outside, "
            << page_.fan_in.inside.get(symbol.id, 0) << " inside\n";
        if (const std::string lead = lead_of(description.documentation); !lead.empty()) {
            out << '\n' << lead << '\n';
        }
        if (!code.empty()) {
            out << '\n' << fenced_block(code, files_[symbol.path].language);
        }
    }

  private:
    struct File {
        Text language;               // empty when unknown
        std::optional<Lines> lines;  // once read
    };

    static Lines signature(const Description& description) {
        const std::vector<std::string_view> lines = split_lines(description.signature);
        return {lines.begin(), lines.end()};
    }

    // The declaration's lines, as far as they are in the checkout.
    Lines source(const ScopeSymbol& symbol) {
        const std::optional<LineRange> range = cited_lines(symbol);
        const Lines& lines = read(symbol.path);
        if (!range || std::cmp_greater(range->first, lines.size())) {
            return {};
        }
        const auto first = static_cast<std::ptrdiff_t>(range->first - 1);
        const auto last = std::min(static_cast<std::ptrdiff_t>(range->last), std::ssize(lines));
        return {lines.begin() + first, lines.begin() + last};
    }

    const Lines& read(const Text& path) {
        File& file = files_[path];
        if (!file.lines) {
            std::optional<FileLines> read = checkout_.read_lines(path);
            file.lines = read ? std::move(read->lines) : Lines();
        }
        return *file.lines;
    }

    const Page& page_;
    const Checkout& checkout_;
    bool with_source_;
    Descriptions descriptions_;
    models::OrderedMap<Text, File> files_;
};

void write_declarations(std::ostream& out, const Page& page, Blocks blocks) {
    out << "## Declarations\n\n"
           "The declarations of this page that matter most, every file represented: what production code outside "
           "the page uses and its entry points first.\n";
    for (const ScopeSymbol* symbol : page.selection) {
        blocks.write(out, *symbol);
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
            << code_cell(citation(target->path, cited_lines(*target))) << " | " << references << " |\n";
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

// Everything that a page is written from.
struct Material {
    const Page& page;
    const storage::Database& db;
    const Checkout& checkout;
    bool with_source;
};

void write_section(std::ostream& out, Section section, const Material& material) {
    const Page& page = material.page;
    switch (section) {
    case Section::FILES:
        out << render_file_cards(page.facts, page.fan_in, "## Files", page.missing);
        break;
    case Section::CONSUMERS:
        out << render_consumers(page.facts, page.fan_in, "## Consumers");
        break;
    case Section::DECLARATIONS:
        write_declarations(out, page, Blocks(page, material.db, material.checkout, material.with_source));
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

void write_markdown(std::ostream& out, const Page& page, const storage::Database& db, const Checkout& checkout,
                    const MarkdownOptions& options) {
    const Material material{.page = page, .db = db, .checkout = checkout, .with_source = options.with_source};
    const char* separator = "";
    for (const auto& [name, section] : SECTIONS) {
        if (options.only.empty() || options.only.contains(section)) {
            out << separator;
            write_section(out, section, material);
            separator = "\n";
        }
    }
}

}  // namespace embedded
