// Brings the files of a wiki up to date with an index, or tells which of them are not.
#pragma once

#include "host/index/index.h"
#include "host/pages/coverage.h"
#include "host/pages/page_format.h"
#include "host/pages/wiki.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace host::pages {

struct UpdateOptions {
    std::string folder;  ///< of the wiki's files
    PageFormat format = markdown_format();
    bool is_check = false;  ///< whether nothing is written
    bool prunes = false;    ///< whether files of pages that are gone are removed
    std::string version;    ///< of this program
};

/// What was done, or with a check what there is to do. Each text is one line.
struct UpdateReport {
    std::vector<std::string> changes;   ///< a page that is written, and why
    std::vector<std::string> removed;   ///< a file that is removed, and why
    std::vector<std::string> failures;  ///< a page that cannot be written, and why
    std::vector<std::string> remarks;   ///< what leaves pages in doubt; files that belong to no page
    std::size_t unchanged = 0;          ///< pages whose files are as they are to be
    Coverage coverage = {};
};

/// Makes every page of the wiki from one state of the index, on all cores. Files that are as they are to be are not
/// touched. A file that somebody else has written or changed is not replaced: that is a failure of its page. `on_done`
/// is told now and then how many pages are made.
///
/// Throws `UnusableIndex`, `IndexError`, what `check_interrupt` throws, and `std::runtime_error` with one line when the
/// folder cannot be written; then no file has changed, unless taking their places itself has failed.
UpdateReport update_wiki(const Index& index, const Wiki& wiki, const UpdateOptions& options,
                         const CheckInterrupt& check_interrupt, const std::function<void(std::size_t done)>& on_done);

}  // namespace host::pages
