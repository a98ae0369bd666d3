#include "host/index/declaration_table.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace host {

DeclarationTable::DeclarationTable(std::vector<storage::ScopeSymbol> declarations)
    : declarations_(std::move(declarations)) {
    if (!std::ranges::is_sorted(declarations_, {}, &storage::ScopeSymbol::id)) {
        std::ranges::sort(declarations_, {}, &storage::ScopeSymbol::id);
    }
}

const storage::ScopeSymbol* DeclarationTable::find(storage::SymbolId id) const {
    if (declarations_.empty() || id < declarations_.front().id || id > declarations_.back().id) {
        return nullptr;
    }
    // Where no id is left out, an id tells its place, and no declaration has to be looked at.
    const auto first = static_cast<std::uint64_t>(declarations_.front().id);
    const std::uint64_t offset = static_cast<std::uint64_t>(id) - first;
    const bool is_dense = static_cast<std::uint64_t>(declarations_.back().id) - first == declarations_.size() - 1;
    if (is_dense || (offset < declarations_.size() && declarations_[offset].id == id)) {
        return &declarations_[offset];
    }
    const auto found = std::ranges::lower_bound(declarations_, id, {}, &storage::ScopeSymbol::id);
    return found->id == id ? &*found : nullptr;
}

std::vector<storage::SymbolId> DeclarationTable::ids() const {
    std::vector<storage::SymbolId> ids(declarations_.size());
    std::ranges::transform(declarations_, ids.begin(), &storage::ScopeSymbol::id);
    return ids;
}

}  // namespace host
