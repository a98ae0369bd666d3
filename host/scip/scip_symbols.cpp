#include "host/scip/scip_symbols.h"

#include "host/scip/declarations.h"
#include "host/scip/symbol.h"

#include <optional>
#include <utility>

namespace host::scip {

namespace {

using indexing::DeclarationName;
using indexing::Elsewhere;

// "a.b/c" -> "a.b/c", "b/c", "c": where a module is imported relative to another one, some indexers name it so.
void add_with_ends(const std::string& module, std::set<std::string>& names) {
    names.insert(module);
    for (std::size_t link = module.find_first_of("./"); link != std::string::npos;
         link = module.find_first_of("./", link + 1)) {
        names.insert(module.substr(link + 1));
    }
}

}  // namespace

ScipSymbols::ScipSymbols(Contents contents) : contents_(std::move(contents)), is_defined_(contents_.symbols.size()) {
    for (const auto& [path, file] : contents_.files) {
        files_.push_back(&file);
        for (const Definition& definition : file.definitions) {
            is_defined_[definition.symbol] = true;
        }
    }
    for (SymbolNumber number = 0; number < contents_.symbols.size(); ++number) {
        if (is_defined_[number]) {
            const Symbol symbol = parse_symbol(contents_.symbols.symbol(number)).value();
            own_heads_.insert(symbol.head);
            if (const std::optional<std::string> module = module_name(symbol.descriptors)) {
                add_with_ends(*module, held_modules_);
            }
        }
    }
}

DeclarationName ScipSymbols::name_of(SymbolNumber symbol, std::uint32_t file) const {
    const Symbol parts = parse_symbol(contents_.symbols.symbol(symbol)).value();
    const auto& descriptions = files_[file]->descriptions;
    const auto description = descriptions.find(symbol);
    return {scip::name_of(parts.descriptors, description == descriptions.end() ? Description() : description->second),
            fqn_of(parts.descriptors)};
}

std::optional<Elsewhere> ScipSymbols::declared_elsewhere(SymbolNumber symbol) const {
    if (is_defined_[symbol]) {
        return std::nullopt;  // a parameter or the like, which is no declaration
    }
    const Symbol parts = parse_symbol(contents_.symbols.symbol(symbol)).value();
    const std::optional<std::string> module = module_name(parts.descriptors);
    if (own_heads_.contains(parts.head)) {
        return module && !held_modules_.contains(*module) ? std::optional(Elsewhere{*module, true}) : std::nullopt;
    }
    const bool is_worth_a_word = module || is_declaration(parts.descriptors.back(), SymbolKind::UNSPECIFIED);
    return is_worth_a_word ? std::optional(Elsewhere{parts.package, false}) : std::nullopt;
}

}  // namespace host::scip
