// A page as a picture: who uses it, what it consists of, what it leans on.
#pragma once

#include "embedded/page/page.h"

#include <string>

namespace embedded {

/// A page as a flowchart in the language Mermaid; empty when it has no arrow to draw.
///
/// At most 30 nodes: the files of the page (of more than fit those that other production files use most), the files
/// outside that use the page most (`file_users`), and the declarations of other files that it leans on most
/// (`Page::neighbours`). An arrow leads from who uses to what is used, and bears the number of references. Whatever
/// characters a path has, they are shown as they are.
std::string flowchart(const Page& page);

}  // namespace embedded
