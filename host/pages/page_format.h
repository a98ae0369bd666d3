// How the pages of a wiki become files.
#pragma once

#include "host/index/database.h"
#include "host/page/page_head.h"
#include "host/page/requested_page.h"
#include "host/pages/wiki.h"

#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

namespace host::pages {

/// A page that was made.
struct MadePage {
    std::string title;
    std::string file;  ///< its path in the wiki's folder
};

struct PageFormat {
    std::string ending;  ///< of each file: ".md"

    /// Is told before all others which pages there are, and the files of the index that each is about; may be null.
    std::function<void(const Wiki& wiki, std::span<const std::vector<std::string>> files_of_pages)> begin = {};

    /// Writes a page under its head, whose stamp must stand in the text. `db` is the page's. Called on any thread.
    std::function<void(std::ostream& out, const RequestedPage& page, storage::Database& db, const PageHead& head)>
        write;

    /// Writes the file "index", which leads to all pages, with the stamp in it; null where there is none.
    std::function<void(std::ostream& out, std::span<const MadePage> pages, const std::string& stamp)> write_index = {};
};

/// The files that `page` prints as Markdown.
PageFormat markdown_format();

/// The files that `page` prints as JSON, with the head as members.
PageFormat json_format();

}  // namespace host::pages
