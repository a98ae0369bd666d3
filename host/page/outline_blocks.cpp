#include "host/page/outline_blocks.h"

#include "host/page/citation.h"
#include "host/text/blanks.h"
#include "host/text/counted.h"
#include "host/text/markdown_text.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

namespace {

using storage::ScopeSymbol;
using wiki::scope::LineRange;

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

std::string heading_of(const FileOutline& file) {
    const bool has_lines = file.lines.value_or(0) > 0;
    return "\n### " +
           code_span(citation(file.path, has_lines ? std::optional(LineRange{1, *file.lines}) : std::nullopt)) + "\n\n";
}

// What stands below the lines of the first `shown` declarations.
std::string end_of(const FileOutline& file, std::size_t shown) {
    if (file.declarations.empty()) {
        return "No declarations.\n";
    }
    const auto others = static_cast<std::int64_t>(file.declarations.size() - shown);
    return others == 0
               ? ""
               : "- _..." + counted(others, shown > 0 ? "more declaration" : "declaration") + " left out to fit_\n";
}

// How many declarations of a file are shown when at most so many are.
std::size_t shown_of(const FileOutline& file, std::size_t most) {
    return std::min(most, file.declarations.size());
}

}  // namespace

OutlineBlocks::OutlineBlocks(const Page& page, storage::Database& db) : db_(db), files_(file_outlines(page, db)) {
    for (const FileOutline& file : files_) {
        std::vector<std::size_t>& bytes = bytes_.emplace_back(1, 0);
        for (const OutlinedDeclaration& declaration : file.declarations) {
            db_.check_interrupt();
            bytes.push_back(bytes.back() + line_of(declaration).size());
        }
        most_ = std::max(most_, file.declarations.size());
    }
    for (const std::string& path : page.missing) {
        missing_.push_back("\n### " + code_span(path) + "\n\nNot in the index.\n");
    }
}

std::vector<ItemSize> OutlineBlocks::sizes(std::size_t steps) const {
    std::vector<ItemSize> sizes;
    for (std::size_t at = 0; at < files_.size(); ++at) {
        db_.check_interrupt();
        const std::size_t shown = shown_of(files_[at], most_ - steps);
        sizes.push_back(
            {.bytes = heading_of(files_[at]).size() + bytes_[at][shown] + end_of(files_[at], shown).size()});
    }
    for (const std::string& block : missing_) {
        sizes.push_back({.bytes = block.size()});
    }
    return sizes;
}

void OutlineBlocks::print(std::string& text, std::size_t count, std::size_t steps) const {
    for (std::size_t at = 0; at < std::min(count, files_.size()); ++at) {
        db_.check_interrupt();
        const std::size_t shown = shown_of(files_[at], most_ - steps);
        text += heading_of(files_[at]);
        for (const OutlinedDeclaration* const declaration : by_lines(files_[at], shown)) {
            text += line_of(*declaration);
        }
        text += end_of(files_[at], shown);
    }
    for (std::size_t at = files_.size(); at < count; ++at) {
        text += missing_[at - files_.size()];
    }
}

}  // namespace host
