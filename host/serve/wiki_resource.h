// The pages of a wiki as resources: `scope://wiki/NAME`.
#pragma once

#include "host/pages/wiki.h"
#include "host/serve/tools.h"

#include <string>

namespace host::serve {

/// Returns the pages as entries of `resources/list`, in the order of the wiki.
Sent resources_of(const pages::Wiki& wiki);

/// Returns the page of the wiki at an address; null when the address is of another kind. Throws `RpcError` when the
/// wiki has no such page.
const pages::WikiPage* wiki_page_at(const pages::Wiki& wiki, const std::string& uri);

/// Returns the result of `resources/read` for a page at `uri`: the text that `wiki-scope pages` writes. Reports the
/// remarks of the page as warnings. Throws `RpcError` when there is no such page in the index, and what `RunTool`
/// throws.
std::string read_wiki_page(const std::string& uri, const pages::WikiPage& page, const ToolContext& context,
                           const Call& call);

}  // namespace host::serve
