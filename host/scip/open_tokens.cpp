#include "host/scip/open_tokens.h"

#include "host/scip/lines_of_range.h"
#include "host/scip/token_text.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::scip {

namespace {

using sources::Outline;

// Whether the file imports under this name what the symbol may be: `import a as b`.
bool imports(const Outline* outline, std::string_view name, std::string_view symbol) {
    if (outline == nullptr || !outline->syntax) {
        return false;
    }
    const syntax::Syntax& syntax = *outline->syntax;
    return std::ranges::any_of(syntax.imports, [&](const syntax::Import& import) {
        const syntax::NameId original = import.original == 0 ? import.module : import.original;
        return syntax.name(import.name) == name && may_name(syntax.name(original), symbol);
    });
}

// The symbols that a token with this text may name, of those that its document states.
std::vector<SymbolNumber> meant(const OpenToken& token, std::string_view text, const Outline* outline,
                                const Contents& contents) {
    std::vector<SymbolNumber> meant;
    for (const SymbolNumber symbol : contents.tokens.symbols(token.names)) {
        const std::string_view spelling = symbol == LOCAL_SYMBOL ? std::string_view() : contents.symbols.symbol(symbol);
        if (symbol != LOCAL_SYMBOL && (text.empty() || may_name(text, spelling) || imports(outline, text, spelling))) {
            meant.push_back(symbol);
        }
    }
    return meant;
}

}  // namespace

void settle_open_tokens(Contents& contents, const sources::Sources& sources, const std::optional<Checkout>& checkout,
                        indexing::ImportReport& report) {
    for (auto& [path, file] : contents.files) {
        if (file.open_tokens.empty()) {
            continue;
        }
        const auto source = sources.find(path);
        const bool has_outline = source != sources.end() && source->second.outline;
        const Outline* const outline = has_outline ? &*source->second.outline : nullptr;
        std::optional<FileContent> read = checkout ? checkout->read(path, sources::LARGEST_SOURCE) : std::nullopt;
        RangedText text(read && read->text ? std::move(*read->text) : std::string());
        for (const OpenToken& token : std::exchange(file.open_tokens, {})) {
            if (outline != nullptr && outline->is_in_test(token.range.start_line + 1)) {
                ++report.references_in_test_code;
                continue;
            }
            const std::optional<std::uint32_t> offset = text.offset_of(token.range);
            const std::vector<SymbolNumber> symbols = meant(token, text.at(token.range), outline, contents);
            if (symbols.empty()) {
                file.misnamed.push_back(offset.value_or(0));
                continue;
            }
            const TokenNames names = contents.tokens.number(symbols, contents.symbols);
            const std::int32_t line = lines_of(token.range).first;
            file.references[names].add({1, line});
            if (offset && file.tokens) {
                file.tokens->push_back({*offset, names, line});
            }
        }
    }
}

}  // namespace host::scip
