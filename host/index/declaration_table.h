// Declarations by id.
#pragma once

#include "storage/grounding_queries.h"

#include <span>
#include <vector>

namespace host {

/// Declarations that are looked up by id, at the cost of one comparison where no id is left out between them.
class DeclarationTable {
  public:
    DeclarationTable() = default;
    /// In any order, no two with one id.
    explicit DeclarationTable(std::vector<storage::ScopeSymbol> declarations);

    /// Null for an id that none of them has. Valid as long as the table.
    [[nodiscard]] const storage::ScopeSymbol* find(storage::SymbolId id) const;

    /// By ascending id.
    [[nodiscard]] std::span<const storage::ScopeSymbol> all() const { return declarations_; }

    /// Ascending.
    [[nodiscard]] std::vector<storage::SymbolId> ids() const;

  private:
    std::vector<storage::ScopeSymbol> declarations_;
};

}  // namespace host
