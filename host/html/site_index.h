// The file that leads to all pages of a wiki: pages, their files and declarations, with one search over all.
#pragma once

#include "host/page/page.h"
#include "host/page/section.h"

#include <iosfwd>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace host::html {

/// A page as the index lists it.
struct SitePage {
    std::string title;
    std::string file;  ///< its path, relative to the index
};

/// Gathers what the pages of a wiki hold as they are made, on any thread, and writes the index in the end.
class SiteIndex {
  public:
    /// Notes the files and the selected declarations of a page, as far as its sections show them. Titles are unique.
    void add(const std::string& title, const Page& page, const SectionChoice& sections);

    /// Writes the index of these pages, which were added. Equal pages give equal bytes. The text holds `stamp`.
    void write(std::ostream& out, std::span<const SitePage> pages, const std::string& stamp) const;

  private:
    struct Entry {
        std::string name;
        std::string kind;    // empty for a file
        std::string path;    // of the file that it is in
        std::string anchor;  // on its page
    };
    struct Contents {
        std::int64_t lines = 0;
        std::vector<Entry> files;
        std::vector<Entry> declarations;
    };

    std::mutex mutex_;
    std::map<std::string, Contents> contents_;  // by title
};

}  // namespace host::html
