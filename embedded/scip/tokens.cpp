#include "embedded/scip/tokens.h"

#include "embedded/scip/symbol.h"

namespace embedded::scip {

namespace {

constexpr TokenNames COMBINATION = 0x8000'0000;  // the bit that tells a combination from a symbol

}  // namespace

std::optional<SymbolNumber> SymbolTable::number(std::string_view symbol) {
    if (symbol.empty()) {
        return std::nullopt;
    }
    if (is_local(symbol)) {
        return LOCAL_SYMBOL;
    }
    if (const auto known = numbers_.find(symbol); known != numbers_.end()) {
        return known->second;
    }
    const auto added = numbers_.emplace(symbol, std::nullopt).first;
    if (const std::optional<Symbol> parts = parse_symbol(symbol)) {
        added->second = static_cast<SymbolNumber>(symbols_.size());
        symbols_.push_back(added->first);
        augmentations_.push_back(scip::is_augmentation(parts->descriptors));
    }
    return added->second;
}

std::optional<SymbolNumber> SymbolTable::find(std::string_view symbol) const {
    const auto known = numbers_.find(symbol);
    return known == numbers_.end() ? std::nullopt : known->second;
}

TokenNames TokenTable::number(const std::vector<SymbolNumber>& symbols) {
    if (symbols.size() == 1) {
        return symbols.front();
    }
    const auto [entry, is_new] =
        numbers_.try_emplace(symbols, COMBINATION | static_cast<TokenNames>(combinations_.size()));
    if (is_new) {
        combinations_.emplace_back(entry->first);
    }
    return entry->second;
}

std::span<const SymbolNumber> TokenTable::symbols(const TokenNames& names) const {
    const bool is_combination = (names & COMBINATION) != 0;
    return is_combination ? combinations_[names & ~COMBINATION] : std::span(&names, 1);
}

}  // namespace embedded::scip
