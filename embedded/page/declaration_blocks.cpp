#include "embedded/page/declaration_blocks.h"

#include "embedded/page/citation.h"
#include "embedded/page/descriptions.h"
#include "embedded/page/doc_comment.h"
#include "embedded/text/counted.h"
#include "embedded/text/markdown_text.h"
#include "embedded/text/split_lines.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

namespace embedded {

namespace {

using models::Text;
using storage::ScopeSymbol;
using wiki::scope::LineRange;

// Everything that a block says above the code.
std::string introduction(const ScopeSymbol& symbol, const std::string& name, const wiki::scope::FanIn& fan_in,
                         std::string_view documentation) {
    std::string text = "\n### " + code_span(name) + "\n\n" + plain_text(symbol.kind) + ", " +
                       code_span(citation(symbol.path, cited_lines(symbol))) + ", " +
                       counted(fan_in.outside.get(symbol.id, 0), "use") + " outside, " +
                       std::to_string(fan_in.inside.get(symbol.id, 0)) + " inside\n";
    const std::string lead = lead_of(documentation);
    return lead.empty() ? text : text + "\n" + lead + "\n";
}

// The declaration's lines, as far as the file has them.
std::vector<std::string> lines_of_declaration(const ScopeSymbol& symbol, const std::vector<std::string>& file) {
    const std::optional<LineRange> range = cited_lines(symbol);
    if (!range || std::cmp_greater(range->first, file.size())) {
        return {};
    }
    const auto first = static_cast<std::ptrdiff_t>(range->first - 1);
    const auto last = std::min(static_cast<std::ptrdiff_t>(range->last), std::ssize(file));
    return {file.begin() + first, file.begin() + last};
}

}  // namespace

DeclarationBlocks::DeclarationBlocks(const Page& page, storage::Database& db, const ScopedNames& names)
    : names_(names) {
    models::OrderedMap<Text, std::string> languages;
    for (const storage::ScopeFile& file : page.facts.files) {
        languages[file.path] = std::string(file.language.value_or(Text()));
    }
    std::vector<storage::SymbolId> ids(page.selection.size());
    std::ranges::transform(page.selection, ids.begin(), &ScopeSymbol::id);
    read_descriptions(db, ids, [&](std::size_t place, const DescriptionRow& description) {
        const ScopeSymbol& symbol = *page.selection[place];
        by_file_[symbol.path].push_back(place);
        const std::vector<std::string_view> lines = split_lines(description.signature);
        declarations_.push_back(
            {.symbol = &symbol,
             .introduction = introduction(symbol, names.of(symbol), page.fan_in, description.documentation),
             .language = languages.get(symbol.path, ""),
             .signature = {lines.begin(), lines.end()},
             .source = {}});
    });
}

// A selection goes back and forth between the files, so each is read once and kept until the last declaration has its
// lines.
void DeclarationBlocks::read_sources(const PageSources& sources) {
    models::OrderedMap<Text, std::optional<std::vector<std::string>>> files;
    for (Declaration& declaration : declarations_) {
        std::optional<std::vector<std::string>>& file = files[declaration.symbol->path];
        if (!file) {
            file = sources.read(declaration.symbol->path).lines;
        }
        declaration.source = lines_of_declaration(*declaration.symbol, *file);
    }
}

const DeclarationBlocks::Declaration* DeclarationBlocks::printed_around(std::size_t declaration,
                                                                        std::size_t sources) const {
    const Declaration& inner = declarations_[declaration];
    const Declaration* outermost = nullptr;
    if (inner.source.empty()) {
        return outermost;
    }
    LineRange widest = *cited_lines(*inner.symbol);
    for (const std::size_t at : *by_file_.find(inner.symbol->path)) {
        const LineRange around = cited_lines(*declarations_[at].symbol).value_or(LineRange{0, 0});
        const bool is_printed = at < sources && at != declaration && !declarations_[at].source.empty();
        const bool is_around = around.first <= widest.first && widest.last <= around.last;
        // Of those with the same lines the first is printed.
        if (is_printed && is_around && (around != widest || (outermost == nullptr && at < declaration))) {
            outermost = &declarations_[at];
            widest = around;
        }
    }
    return outermost;
}

std::size_t DeclarationBlocks::without_source(std::size_t sources, std::size_t wanted) const {
    std::size_t count = 0;
    for (std::size_t at = sources; at < std::min(wanted, declarations_.size()); ++at) {
        count += !declarations_[at].source.empty() && printed_around(at, sources) == nullptr ? 1U : 0U;
    }
    return count;
}

std::vector<std::string> DeclarationBlocks::blocks(std::size_t sources) const {
    std::vector<std::string> blocks;
    for (std::size_t at = 0; at < declarations_.size(); ++at) {
        const Declaration& declaration = declarations_[at];
        std::string block = declaration.introduction;
        const std::vector<std::string>& code = at < sources ? declaration.source : declaration.signature;
        if (const Declaration* const around = printed_around(at, sources)) {
            block += "\nIts source is part of that of " + code_span(names_.of(*around->symbol)) + ".\n";
        } else if (!code.empty()) {
            block += "\n" + fenced_block(code, declaration.language);
        }
        blocks.push_back(std::move(block));
    }
    return blocks;
}

}  // namespace embedded
