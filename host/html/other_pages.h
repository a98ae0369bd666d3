// The rest of a wiki, seen from one of its pages.
#pragma once

#include "host/html/anchors.h"
#include "host/html/site_map.h"
#include "host/index/database.h"

#include <map>
#include <string>
#include <string_view>

namespace host::html {

/// Addresses on the other pages of a wiki, relative to one page. One thread at a time uses it.
class OtherPages {
  public:
    /// `title` is that of the page. `map` and the page's `db` must outlive it.
    OtherPages(const SiteMap& map, std::string title, storage::Database& db);

    /// The address of a file; empty when it stands on no other page.
    [[nodiscard]] std::string file(std::string_view path) const;

    /// The address of a declaration, or of its file where the page does not show all declarations; empty when it stands
    /// on no other page. Asks the index for the declarations of each file once, and throws `IndexError`.
    [[nodiscard]] std::string declaration(const storage::ScopeSymbol& symbol) const;

  private:
    [[nodiscard]] const DeclarationAnchors& anchors_of(const std::string& path) const;

    const SiteMap& map_;
    std::string title_;
    storage::Database& db_;
    mutable std::map<std::string, DeclarationAnchors> anchors_;  // by the path of the file
};

}  // namespace host::html
