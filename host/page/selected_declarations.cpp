#include "host/page/selected_declarations.h"

#include "host/page/citation.h"
#include "host/page/descriptions.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace host {

namespace {

using models::Text;
using storage::ScopeSymbol;

// The declaration's lines, as far as the file has them.
std::vector<std::string> lines_of_declaration(const ScopeSymbol& symbol, const std::vector<std::string>& file) {
    const std::optional<wiki::scope::LineRange> range = cited_lines(symbol);
    if (!range || std::cmp_greater(range->first, file.size())) {
        return {};
    }
    const auto first = static_cast<std::ptrdiff_t>(range->first - 1);
    const auto last = std::min(static_cast<std::ptrdiff_t>(range->last), std::ssize(file));
    return {file.begin() + first, file.begin() + last};
}

// A selection goes back and forth between the files, so each is read once and kept until the last declaration has its
// lines.
void read_sources(std::vector<SelectedDeclaration>& declarations, const PageSources& sources,
                  const storage::Database& db) {
    models::OrderedMap<Text, std::optional<std::vector<std::string>>> files;
    for (SelectedDeclaration& declaration : declarations) {
        db.check_interrupt();
        const ScopeSymbol& symbol = *declaration.symbol;
        std::optional<std::vector<std::string>>& file = files[symbol.path];
        if (!file) {
            file = sources.read(symbol.path).lines;
        }
        declaration.source = lines_of_declaration(symbol, *file);
    }
}

}  // namespace

std::vector<SelectedDeclaration> selected_declarations(const Page& page, storage::Database& db, bool with_source) {
    models::OrderedMap<Text, std::string> languages;
    for (const storage::ScopeFile& file : page.facts.files) {
        languages[file.path] = std::string(file.language.value_or(Text()));
    }
    std::vector<storage::SymbolId> ids(page.selection.size());
    std::ranges::transform(page.selection, ids.begin(), &ScopeSymbol::id);
    std::vector<models::Excerpt<UseSite>> uses = uses_of_selection(page);
    std::vector<SelectedDeclaration> declarations;
    declarations.reserve(ids.size());
    read_descriptions(db, ids, [&](std::size_t place, const DescriptionRow& description) {
        db.check_interrupt();
        const ScopeSymbol& symbol = *page.selection[place];
        declarations.push_back({.symbol = &symbol,
                                .name = page.names.of(symbol),
                                .language = languages.get(symbol.path, ""),
                                .documentation = std::string(description.documentation),
                                .signature = std::string(description.signature),
                                .source = {},
                                .uses = std::move(uses[place])});
    });
    if (with_source) {
        read_sources(declarations, page.sources, db);
    }
    return declarations;
}

}  // namespace host
