// Links within a page and to other pages, only to what stands there, and to a site with the sources.
#pragma once

#include "host/html/anchors.h"
#include "host/links/source_links.h"
#include "host/page/page.h"
#include "host/page/section.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace host::html {

/// Returns the address of a file on another page of the wiki; empty when it stands on none.
using PageElsewhere = std::function<std::string(std::string_view path)>;

class Links {
  public:
    /// `page` and `sources`, which may be null, must outlive it. `elsewhere` may be null, too.
    Links(const Page& page, const SectionChoice& sections, const SourceLinks* sources = nullptr,
          PageElsewhere elsewhere = {});

    /// The anchor of a file, without "#"; empty when the file does not stand on the page.
    [[nodiscard]] std::string file(const models::Text& path) const;

    /// The address of a file, on this page or another one; empty when it stands on none.
    [[nodiscard]] std::string address(const models::Text& path) const;

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
    PageElsewhere elsewhere_;
};

}  // namespace host::html
