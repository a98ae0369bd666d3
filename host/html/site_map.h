// Which page of a wiki a file stands on.
#pragma once

#include "host/html/site_index.h"

#include <map>
#include <span>
#include <string>
#include <string_view>

namespace host::html {

/// Leads from one page of a wiki to another. Filled before pages are written, then read from any thread.
class SiteMap {
  public:
    /// Notes which files a page is about, and whether it has a table of them. Of several pages about a file the first
    /// one counts.
    void add(const SitePage& page, std::span<const std::string> files, bool has_table);

    /// Returns the address of a file on another page, relative to the page with the title `from`; empty when no other
    /// page is about it.
    [[nodiscard]] std::string address(const std::string& from, std::string_view path) const;

  private:
    struct Place {
        std::string page;  // its file
        bool has_table = false;
    };
    std::map<std::string, std::string> files_;         // of the pages, by title
    std::map<std::string, Place, std::less<>> pages_;  // by the path of a source
};

}  // namespace host::html
