#include "host/indexing/symbols.h"

#include <utility>

namespace host::indexing {

namespace {

// The bit that marks a combination. Of symbols, only `LOCAL_SYMBOL` has it.
constexpr TokenNames COMBINATION = 0x8000'0000;

}  // namespace

TokenNames TokenTable::number(std::vector<SymbolNumber> symbols) {
    if (symbols.size() == 1) {
        return symbols.front();
    }
    const auto [combination, is_new] = numbers_.try_emplace(std::move(symbols));
    if (is_new) {
        combination->second = COMBINATION | static_cast<TokenNames>(combinations_.size());
        combinations_.push_back(&combination->first);
    }
    return combination->second;
}

std::span<const SymbolNumber> TokenTable::symbols(const TokenNames& names) const {
    const bool is_combination = names != LOCAL_SYMBOL && (names & COMBINATION) != 0;
    return is_combination ? std::span(*combinations_[names & ~COMBINATION]) : std::span(&names, 1);
}

}  // namespace host::indexing
