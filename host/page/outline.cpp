#include "host/page/outline.h"

#include "host/page/citation.h"
#include "host/page/descriptions.h"
#include "host/text/blanks.h"
#include "host/text/counted.h"
#include "host/text/markdown_text.h"

#include <algorithm>
#include <unordered_map>

namespace host {

namespace {

using storage::ScopeSymbol;
using wiki::scope::LineRange;

std::unordered_map<storage::SymbolId, std::string> signatures(const Page& page, storage::Database& db) {
    std::vector<storage::SymbolId> ids(page.facts.symbols.size());
    std::ranges::transform(page.facts.symbols, ids.begin(), &ScopeSymbol::id);
    std::unordered_map<storage::SymbolId, std::string> signatures;
    read_descriptions(db, ids, [&](std::size_t place, const DescriptionRow& description) {
        signatures[ids[place]] = std::string(description.signature);
    });
    return signatures;
}

// The words of a text, one blank between them.
std::string words_of(std::string_view text) {
    std::string words;
    for (const char character : text) {
        const bool is_blank = BLANKS.find(character) != std::string_view::npos;
        if (!is_blank || (!words.empty() && words.back() != ' ')) {
            words += is_blank ? ' ' : character;
        }
    }
    return words;
}

std::string line_of(const OutlinedDeclaration& declaration) {
    const ScopeSymbol& symbol = *declaration.symbol;
    const std::optional<LineRange> lines = cited_lines(symbol);
    return "- " + (lines ? "L" + std::to_string(lines->first) + "-L" + std::to_string(lines->last) + " " : "") +
           plain_text(symbol.kind) + " " + code_span(symbol.name) +
           (declaration.signature.empty() ? "" : ": " + code_span(words_of(declaration.signature))) + "\n";
}

}  // namespace

std::vector<FileOutline> file_outlines(const Page& page, storage::Database& db) {
    std::unordered_map<storage::SymbolId, std::string> signature_of = signatures(page, db);
    std::vector<FileOutline> files;
    for (const storage::ScopeFile& file : page.facts.files) {
        const std::int64_t* const lines = page.facts.line_counts.find(file.path);
        FileOutline& outline =
            files.emplace_back(FileOutline{file.path, lines == nullptr ? std::nullopt : std::optional(*lines), {}});
        if (const auto* const ranked = page.ranked.find(file.path)) {
            for (const ScopeSymbol* const symbol : *ranked) {
                outline.declarations.push_back({symbol, signature_of[symbol->id]});
            }
        }
    }
    return files;
}

std::vector<const OutlinedDeclaration*> by_lines(const FileOutline& file, std::size_t most) {
    std::vector<const OutlinedDeclaration*> shown;
    for (std::size_t at = 0; at < std::min(most, file.declarations.size()); ++at) {
        shown.push_back(&file.declarations[at]);
    }
    std::ranges::stable_sort(shown, {}, [](const auto* declaration) { return declaration->symbol->start_line; });
    return shown;
}

std::string outline_block(const FileOutline& file, std::size_t most) {
    const bool has_lines = file.lines.value_or(0) > 0;
    std::string block =
        "\n### " + code_span(citation(file.path, has_lines ? std::optional(LineRange{1, *file.lines}) : std::nullopt)) +
        "\n\n";
    for (const OutlinedDeclaration* const declaration : by_lines(file, most)) {
        block += line_of(*declaration);
    }
    if (file.declarations.empty()) {
        return block + "No declarations.\n";
    }
    const std::size_t left_out = file.declarations.size() - std::min(most, file.declarations.size());
    const std::string others =
        counted(static_cast<std::int64_t>(left_out), most > 0 ? "more declaration" : "declaration");
    return left_out == 0 ? block : block + "- _..." + others + " left out to fit_\n";
}

}  // namespace host
