#include "host/page/outline.h"

#include "host/page/descriptions.h"

#include <algorithm>
#include <unordered_map>

namespace host {

namespace {

using storage::ScopeSymbol;

std::unordered_map<storage::SymbolId, std::string> signatures(const Page& page, storage::Database& db) {
    std::vector<storage::SymbolId> ids(page.facts.symbols.size());
    std::ranges::transform(page.facts.symbols, ids.begin(), &ScopeSymbol::id);
    std::unordered_map<storage::SymbolId, std::string> signatures;
    read_descriptions(db, ids, [&](std::size_t place, const DescriptionRow& description) {
        db.check_interrupt();
        signatures[ids[place]] = std::string(description.signature);
    });
    return signatures;
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

}  // namespace host
