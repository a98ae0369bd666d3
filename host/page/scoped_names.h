// Names that tell declarations of a page apart.
#pragma once

#include "workers/wiki/scope/facts.h"

#include <span>
#include <string>
#include <unordered_map>

namespace host {

/// The names under which some declarations of a page are shown: that of one whose name several declarations of the page
/// bear has the name of the declaration in front of it that it is a member of: `Subject.constructor`. The facts must
/// outlive it.
class ScopedNames {
  public:
    ScopedNames(const wiki::scope::ScopeFacts& facts, std::span<const storage::ScopeSymbol* const> shown);

    /// The name of one of the declarations that were given.
    [[nodiscard]] std::string of(const storage::ScopeSymbol& symbol) const;

  private:
    std::unordered_map<storage::SymbolId, std::string> scoped_;  // those that have a scope
};

}  // namespace host
