// The picture of a page: who uses it, its files, and what it leans on.
#pragma once

#include "host/html/links.h"
#include "host/html/view.h"
#include "host/page/page.h"

namespace host::html {

/// The nodes and arrows of the drawing with their places, and the arrows as rows of a table, for the template. Throws
/// what `layout_of` throws.
View picture_view(const Page& page, const Links& links);

}  // namespace host::html
