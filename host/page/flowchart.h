// A flowchart of a page: its users, its files, its dependencies.
#pragma once

#include "host/page/page.h"

#include <string>

namespace host {

struct Flowchart {
    std::string source;          ///< in the language Mermaid; empty when the page has no arrow to draw
    bool has_every_file = true;  ///< whether all files of the page are drawn
};

/// Draws a page. At most 30 nodes: the files of the page (of more than fit those that other production files use most),
/// the files outside that use the page most (`file_users`), and the declarations of other files that it leans on most
/// (`Page::neighbours`). An arrow leads from who uses to what is used, and bears the number of references. Whatever
/// characters a path has, they are shown as they are.
Flowchart flowchart(const Page& page);

}  // namespace host
