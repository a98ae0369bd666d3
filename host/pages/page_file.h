// The file of a wiki's page.
#pragma once

#include "host/index/database.h"
#include "host/pages/page_format.h"
#include "host/pages/stated_facts.h"
#include "host/pages/wiki.h"

#include <string>
#include <vector>

namespace host::pages {

struct PageFile {
    std::string text;                       ///< sealed (stamp.h)
    StatedFacts facts = {};                 ///< what it states
    std::vector<std::string> files = {};    ///< the files of the index that the page is about
    std::vector<std::string> remarks = {};  ///< what leaves the page in doubt, one line each
    bool is_failure = false;                ///< whether there is no page; the remarks say why
};

/// Makes the file of a page from its index. A budget that is too small is a failure of the page alone. Calls
/// `before_reading` as `load_page` does. Throws what `RequestedPage` and the format's `write` throw.
PageFile page_file(const WikiPage& page, const PageFormat& format, storage::Database& db,
                   const BeforeReading& before_reading = {});

}  // namespace host::pages
