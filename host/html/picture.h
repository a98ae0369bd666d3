// The picture of a page: who uses it, its files, and what it leans on.
#pragma once

#include "host/html/links.h"
#include "host/html/view.h"
#include "host/page/page.h"

namespace host::html {

/// The drawing as SVG whose nodes are links, and its arrows as rows of a table, for the template. The drawing has no
/// colors: these are for the style sheet. Throws what `layout_of` throws.
View picture_view(const Page& page, const Links& links);

}  // namespace host::html
