#include "host/worktree/extract.h"

#include "host/sources/language.h"
#include "host/worktree/free_memory.h"
#include "host/worktree/source_symbols.h"

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

namespace host::worktree {

namespace {

using indexing::FileDeclarations;
using indexing::ImportReport;
using resolve::Evidence;
using resolve::FileId;

// Takes from a file what it declares. References to a constructor lead to its type. Alternatives are one declaration,
// from the first line of the first to the last of the last.
FileDeclarations declared_in(ReadFile& file, FileId id, const SourceSymbols& symbols) {
    FileDeclarations declared;
    declared.line_count = file.facts.line_count;
    declared.modules.push_back(symbols.number({id, resolve::Target::MODULE}));
    const std::vector<syntax::Declaration>& stated = file.facts.syntax.declarations;
    std::unordered_map<syntax::DeclarationId, std::uint32_t> places;
    std::vector<indexing::Declaration>& rows = declared.declarations = std::move(file.declarations);
    std::uint32_t kept = 0;
    for (std::size_t at = 0; at < rows.size(); ++at) {
        const syntax::DeclarationId of = stated[rows[at].symbol].alternative_of;
        const syntax::DeclarationId first = of == syntax::NO_DECLARATION ? rows[at].symbol : of;
        const auto [place, is_new] = places.try_emplace(first, kept);
        if (is_new) {
            std::swap(rows[kept], rows[at]);
            rows[kept].symbol = symbols.number({id, first});
            ++kept;
        } else {
            indexing::Declaration& row = rows[place->second];
            row.lines.last = std::max(row.lines.last, rows[at].lines.last);
            row.further_signatures.push_back(rows[at].signature);
        }
    }
    rows.resize(kept);
    declared.symbols.reserve(places.size());
    for (const auto& [declaration, place] : places) {
        const indexing::Declaration& row = declared.declarations[place];
        const auto type = row.kind == "constructor" ? places.find(stated[declaration].parent) : places.end();
        declared.symbols.push_back({row.symbol, type == places.end() ? place : type->second, row.lines.count(), true});
    }
    return declared;
}

// Forgets what served to resolve names.
void forget_expressions(std::span<ReadFile> files) {
    for (ReadFile& file : files) {
        file.facts.syntax.expressions = std::vector<syntax::Expression>();  // {} would keep the memory
        file.facts.syntax.lists = std::vector<syntax::ExpressionId>();
    }
    release_free_memory();
}

void add_references(const resolve::References& found, const SourceSymbols& symbols, indexing::TokenTable& names,
                    indexing::ExtractedFile& file) {
    for (const resolve::Reference& reference : found.references) {
        const indexing::SymbolNumber symbol = symbols.number(reference.target);
        const indexing::Occurrences tokens{static_cast<std::uint32_t>(reference.count),
                                           static_cast<std::int32_t>(reference.line)};
        switch (reference.evidence) {
        case Evidence::UNIQUE:
            file.unique_references[symbol].add(tokens);
            break;
        case Evidence::AMBIGUOUS:  // with a symbol that nothing declares
            file.references[names.number({symbol, indexing::LOCAL_SYMBOL})].add(tokens);
            break;
        default:
            file.references[symbol].add(tokens);
        }
    }
}

// The line of the first token that leads into a file; 0 when none does.
std::int32_t first_line_into(FileId file, std::span<const resolve::TokenTarget> tokens) {
    const auto first = std::ranges::find(tokens, file, [](const auto& token) { return token.target.file; });
    return first == tokens.end() ? 0 : static_cast<std::int32_t>(first->place.line);
}

// What is known of a file that another front end describes.
indexing::ExtractedFile described_file(const resolve::File& file, FileId id, const FoundNames& found,
                                       const SourceSymbols& symbols, indexing::TokenTable& tokens) {
    indexing::ExtractedFile described;
    described.path = file.path;
    described.declared.modules.push_back(symbols.number({id, resolve::Target::MODULE}));
    for (syntax::DeclarationId at = 0; at < file.syntax->declarations.size(); ++at) {
        described.declared.names.push_back({file.syntax->declarations[at].offset, symbols.number({id, at})});
    }
    for (const FileId imported : found.imports) {
        described.references[symbols.number({imported, resolve::Target::MODULE})].add(
            {1, first_line_into(imported, found.tokens)});
    }
    std::vector<indexing::NamedToken>& named = described.tokens.emplace();
    std::span<const resolve::TokenTarget> targets = found.tokens;
    while (!targets.empty()) {
        const syntax::TokenPlace place = targets.front().place;
        std::vector<indexing::SymbolNumber> meant;
        for (; !targets.empty() && targets.front().place == place; targets = targets.subspan(1)) {
            meant.push_back(symbols.number(targets.front().target));
        }
        std::ranges::sort(meant);
        meant.erase(std::unique(meant.begin(), meant.end()), meant.end());
        named.push_back({place.offset, tokens.number(std::move(meant)), static_cast<std::int32_t>(place.line)});
    }
    return described;
}

void report_file(const ReadFile& file, ImportReport& report) {
    if (file.content_hash == 0) {
        report.unread.add(file.path);
        return;
    }
    ++report.sources;
    if (!file.facts.is_parsed && sources::understood_language("", file.path) != nullptr) {
        report.unparsed.add(file.path);
    }
    if (file.facts.is_damaged) {
        report.damaged.add(file.path);
    }
    if (file.references.unresolved > 0) {
        report.unresolved_by_language[std::string(file.facts.language)] += file.references.unresolved;
    }
}

}  // namespace

std::vector<indexing::Declaration> spooled(const std::vector<DeclarationFacts>& declarations, TextSpool& spool) {
    std::vector<indexing::Declaration> spooled;
    spooled.reserve(declarations.size());
    for (const DeclarationFacts& facts : declarations) {
        spooled.push_back({.symbol = facts.id,
                           .is_public = facts.is_public,
                           .lines = facts.lines,
                           .kind = facts.kind,
                           .signature = spool.add(facts.signature),
                           .further_signatures = {},
                           .documentation = spool.add(facts.documentation)});
    }
    return spooled;
}

void resolve_names(ReadFile& file, FileId id, const resolve::Resolver& resolver) {
    file.references = resolver.references_of(id);
    std::erase_if(file.declarations,
                  [&](const indexing::Declaration& each) { return resolver.is_defined_elsewhere(id, each.symbol); });
}

indexing::Extraction extract(std::span<ReadFile> files, const resolve::Repository& repository,
                             std::span<const FoundNames> described, ImportReport& report) {
    indexing::Extraction extraction;
    extraction.files.reserve(repository.files.size());
    auto symbols = std::make_unique<SourceSymbols>(repository);
    forget_expressions(files);
    for (FileId id = 0; id < files.size(); ++id) {
        ReadFile& file = files[id];
        indexing::ExtractedFile extracted;
        extracted.path = file.path;
        extracted.language = file.facts.language;
        extracted.declared = declared_in(file, id, *symbols);
        extracted.content_hash = file.content_hash;
        extracted.steps = 1;
        add_references(file.references, *symbols, extraction.tokens, extracted);
        extraction.files.push_back(std::move(extracted));
        extraction.summaries.push_back(file.facts.summary);
        report_file(file, report);
        file.references = {};
    }
    for (std::size_t at = 0; at < described.size(); ++at) {
        const auto id = static_cast<FileId>(files.size() + at);
        extraction.files.push_back(
            described_file(repository.files[id], id, described[at], *symbols, extraction.tokens));
    }
    for (const sources::Language& language : sources::languages()) {
        if (language.read_syntax != nullptr) {
            extraction.languages.emplace(language.name);
        }
    }
    extraction.symbols = std::move(symbols);
    return extraction;
}

}  // namespace host::worktree
