// What the symbols of SCIP files say of themselves.
#pragma once

#include "host/indexing/symbols.h"
#include "host/scip/contents.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace host::scip {

class ScipSymbols : public indexing::Symbols {
  public:
    explicit ScipSymbols(Contents contents);

    [[nodiscard]] std::size_t size() const override { return contents_.symbols.size(); }
    [[nodiscard]] indexing::DeclarationName name_of(SymbolNumber symbol, std::uint32_t file) const override;
    [[nodiscard]] bool is_defined(SymbolNumber symbol) const override { return is_defined_[symbol]; }
    [[nodiscard]] std::optional<indexing::Elsewhere> declared_elsewhere(SymbolNumber symbol) const override;

  private:
    const Contents contents_;
    std::vector<const FileContents*> files_;  // by place
    std::vector<bool> is_defined_;            // by symbol
    std::set<std::string_view> own_heads_;    // of the symbols that documents define
    std::set<std::string> held_modules_;      // each by its whole name and by the ends of that
};

}  // namespace host::scip
