// Links within a page: only to what stands on it.
#pragma once

#include "host/html/anchors.h"
#include "host/page/page.h"
#include "host/page/section.h"

#include <string>
#include <unordered_set>

namespace host::html {

class Links {
  public:
    /// `page` must outlive it.
    Links(const Page& page, const SectionChoice& sections);

    /// The anchor of a file, without "#"; empty when the file does not stand on the page.
    [[nodiscard]] std::string file(const models::Text& path) const;

    /// The anchor of a declaration that stands on the page; else empty.
    [[nodiscard]] std::string declaration(const storage::ScopeSymbol& symbol) const;

    /// Whether the declaration has a block of its own, which its anchor leads to.
    [[nodiscard]] bool has_block(const storage::ScopeSymbol& symbol) const { return blocks_.contains(symbol.id); }

  private:
    DeclarationAnchors anchors_;
    models::TextSet files_;                         // that stand on the page
    std::unordered_set<storage::SymbolId> blocks_;  // declarations that have one
    bool has_outline_;
};

}  // namespace host::html
