// Pages as resources.
#pragma once

#include "host/serve/tools.h"

#include <string>

namespace host::serve {

/// The template of the resources, as `resources/templates/list` gives it: "scope://page/{+path}" is the page of a file,
/// a folder or a pattern, as Markdown.
Sent page_template();

/// The page at an address. Throws `RpcError` when it is no such address.
PageRequest page_at(const std::string& uri);

/// What `resources/read` gives, for the page at `uri`; what leaves the page in doubt is told beside it. Throws as `RunTool` does.
std::string read_page(const std::string& uri, const PageRequest& request, const Workplace& workplace, const Call& call);

}  // namespace host::serve
