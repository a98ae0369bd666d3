#include "host/indexing/symbols.h"

#include <utility>

namespace host::indexing {

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

}  // namespace host::indexing
