// The sections of a page as the template shows them. Each is an object, or false when there is nothing to show.
#pragma once

#include "host/html/links.h"
#include "host/html/view.h"
#include "host/index/database.h"
#include "host/page/page.h"

namespace host::html {

View files_view(const Page& page, const Links& links);
View consumers_view(const Page& page, const Links& links);
/// Asks the index what it says of the declarations in words and, with sources, reads their files. Throws `IndexError`,
/// and what `db.check_interrupt` throws; so does `outline_view`.
View declarations_view(const Page& page, storage::Database& db, const Links& links, bool with_source);
View in_depth_view(const Page& page, const Links& links);
View dependencies_view(const Page& page, const Links& links);
View seeds_view(const Page& page, const Links& links);
View outline_view(const Page& page, storage::Database& db, const Links& links);

/// A file: its anchor, if it stands on the page, and its path as HTML.
View file_view(const models::Text& path, const Links& links);

/// A declaration: its anchor, if it stands on the page, its name, its kind, and a citation of it.
View declaration_view(const storage::ScopeSymbol& symbol, const std::string& name, const Links& links);

/// A citation of lines of a file, or of the file: its text and, where it leads to a site, its address.
View citation_view(std::string_view path, const std::optional<wiki::scope::LineRange>& lines, const Links& links);

/// The same of one line. Where it leads to no site, "href" leads to the page that the file stands on.
View site_view(const models::Text& path, const std::optional<std::int32_t>& line, const Links& links);

/// How much a number is of another one, which is the largest: from "0" to "100".
std::string percent_of(std::int64_t number, std::int64_t largest);

}  // namespace host::html
