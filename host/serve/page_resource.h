// Pages as resources: `scope://page/{+path}`.
#pragma once

#include "host/serve/tools.h"

#include <string>

namespace host::serve {

/// Returns the template as an entry of `resources/templates/list`: "scope://page/{+path}" is the page of a file, a
/// folder or a pattern, as Markdown.
Sent page_template();

/// Reads the address of a page. Throws `RpcError` when it is not one.
PageRequest page_at(const std::string& uri);

/// Returns the result of `resources/read` for the page at `uri`. Reports the remarks of the page as warnings. Throws
/// `RpcError` when the index holds no such path, and what `RunTool` throws.
std::string read_page(const std::string& uri, const PageRequest& request, const ToolContext& context, const Call& call);

}  // namespace host::serve
