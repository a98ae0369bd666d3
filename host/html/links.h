// Links within a page and to other pages, only to what stands there, and to a site with the sources.
#pragma once

#include "host/html/anchors.h"
#include "host/html/other_pages.h"
#include "host/links/source_links.h"
#include "host/page/page.h"
#include "host/page/section.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace host::html {

class Links {
  public:
    /// `page`, `sources` and `others` must outlive it. The last two may be null.
    Links(const Page& page, const SectionChoice& sections, const SourceLinks* sources = nullptr,
          const OtherPages* others = nullptr);

    /// The anchor of a file, without "#"; empty when the file does not stand on the page.
    [[nodiscard]] std::string file(const models::Text& path) const;

    /// The address of a file, on this page or another one; empty when it stands on none.
    [[nodiscard]] std::string address(const models::Text& path) const;

    /// The address of a declaration of another file, or of that file; empty when it stands on no other page.
    [[nodiscard]] std::string address(const storage::ScopeSymbol& symbol) const;

    /// The anchor of a declaration that stands on the page; else empty.
    [[nodiscard]] std::string declaration(const storage::ScopeSymbol& symbol) const;

    /// Whether the declaration has a block of its own, which its anchor leads to.
    [[nodiscard]] bool has_block(const storage::ScopeSymbol& symbol) const { return blocks_.contains(symbol.id); }

    /// The address of some lines of a file; empty without lines, or when nobody has named a site.
    [[nodiscard]] std::string source(std::string_view path, const std::optional<wiki::scope::LineRange>& lines) const;

  private:
    DeclarationAnchors anchors_;
    models::TextSet files_;                         // that stand on the page
    std::unordered_set<storage::SymbolId> blocks_;  // declarations that have one
    bool has_outline_;
    const SourceLinks* sources_;
    const OtherPages* others_;
};

}  // namespace host::html
