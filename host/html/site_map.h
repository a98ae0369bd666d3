// Which page of a wiki a file stands on.
#pragma once

#include "host/html/site_index.h"
#include "host/page/section.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace host::html {

/// Leads from one page of a wiki to another. Filled before pages are written, then read from any thread.
class SiteMap {
  public:
    /// A page that is about a file.
    struct Place {
        std::string address;            ///< relative to the page from which it was asked for
        bool has_files = false;         ///< whether the page has a table of its files
        bool has_declarations = false;  ///< whether all declarations of its files stand on it
    };

    /// Notes which files a page is about, and its sections. Of several pages about a file the first one counts.
    void add(const SitePage& page, std::span<const std::string> files, const SectionChoice& sections);

    /// Returns the page that a file stands on, for a link on the page with the title `from`; none when no other page is
    /// about it.
    [[nodiscard]] std::optional<Place> place(const std::string& from, std::string_view path) const;

  private:
    std::map<std::string, std::string> files_;         // of the pages, by title
    std::map<std::string, Place, std::less<>> pages_;  // by the path of a source, their addresses those from the root
};

}  // namespace host::html
