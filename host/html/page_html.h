// A page as one file of HTML for a browser, which asks nothing of anybody.
//
// page.html is its template in the language Mustache, page.css its style sheet, page.js its script. The build puts them
// into the program, with hashes of the last two: the file forbids a browser whatever else it might run or load.
#pragma once

#include "host/html/links.h"
#include "host/index/database.h"
#include "host/links/source_links.h"
#include "host/page/page.h"
#include "host/page/page_head.h"
#include "host/page/section.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace host::html {

/// Where the facts of a page come from. Each text may be empty.
struct Origin {
    std::string indexer = {};  ///< with its version
    std::string commit = {};   ///< that the sources are of
    std::string made = {};     ///< when the index was written, in UTC: "2026-11-24T10:53:02Z"
    std::string program = {};  ///< what has written the page, with its version
};

struct HtmlOptions {
    PageHead head;                       ///< its title must not be empty
    SectionChoice only = {};             ///< the sections to write
    bool with_source = true;             ///< whether the selected declarations stand with their sources
    std::vector<std::string> remarks{};  ///< what leaves the page in doubt, one line each
    Origin origin = {};
    const SourceLinks* links = nullptr;  ///< where citations lead; null where they are plain text
    const OtherPages* others = nullptr;  ///< lead to the rest of a wiki; null where there is none
};

/// Writes the page. Equal pages of equal options have equal bytes. Whatever an index, a path or a source holds is shown
/// as text. `db` is the page's. Throws `IndexError`, what `db.check_interrupt` and `tests_reaching` throw.
void write_html(std::ostream& out, const Page& page, storage::Database& db, const HtmlOptions& options);

}  // namespace host::html
