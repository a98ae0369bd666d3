// Pages as HTML.
#pragma once

#include "host/page/page_head.h"
#include "host/page/requested_page.h"
#include "host/pages/page_format.h"

#include <iosfwd>
#include <span>
#include <string>

namespace host {

/// Adds to a request for HTML what is left out elsewhere because it is long: HTML folds it.
void choose_all_sections(PageRequest& request);

/// Returns what a page is called that has no other title: its paths as somebody named them, of many the first.
std::string title_of(std::span<const std::string> paths);

/// Writes a page that says from when its index is. `index` is the page's. Throws what `html::write_html` throws.
void write_html(std::ostream& out, const RequestedPage& page, storage::Database& index, const PageHead& head);

/// The files of a wiki as HTML, with an index of all pages. They do not say from when the index is, so that a file
/// stays as it is while its page states the same.
pages::PageFormat html_format();

}  // namespace host
