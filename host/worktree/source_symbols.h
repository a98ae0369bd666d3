// The symbols of an index that is made from sources: its declarations, and its files as modules.
#pragma once

#include "host/indexing/symbols.h"
#include "host/resolve/repository.h"
#include "host/resolve/resolver.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host::worktree {

/// Symbols are numbered by file and declaration; then come the modules, by file.
class SourceSymbols : public indexing::Symbols {
  public:
    /// `repository` must outlive the object, but for the expressions and lists of its files.
    explicit SourceSymbols(const resolve::Repository& repository);

    [[nodiscard]] indexing::SymbolNumber number(const resolve::Target& target) const;

    [[nodiscard]] std::size_t size() const override { return first_.back() + repository_.files.size(); }
    /// The fully qualified name consists of the module's, those of the declarations around it, and its own.
    [[nodiscard]] indexing::DeclarationName name_of(indexing::SymbolNumber symbol, std::uint32_t file) const override;
    [[nodiscard]] bool is_defined(indexing::SymbolNumber /*symbol*/) const override { return true; }
    /// Always none: every symbol is declared.
    [[nodiscard]] std::optional<indexing::Elsewhere>
    declared_elsewhere(indexing::SymbolNumber /*symbol*/) const override {
        return std::nullopt;
    }

  private:
    const resolve::Repository& repository_;
    std::vector<std::string> modules_;
    std::vector<indexing::SymbolNumber> first_;  // by file; one more element holds the number of all declarations
    /// Of declarations that stand outside of their types: what these are called. Of a text of the repository.
    std::unordered_map<indexing::SymbolNumber, std::string_view> owners_;
};

}  // namespace host::worktree
