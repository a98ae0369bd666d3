// Pages as resources.
#pragma once

#include "embedded/serve/tools.h"

#include <string>

namespace embedded::serve {

/// The template of the resources, as `resources/templates/list` gives it: "scope://page/{+path}" is the page of a file,
/// a folder or a pattern, as Markdown.
Sent page_template();

/// The path in the address of a page. Throws `RpcError` when it is no such address.
std::string path_of_page(const std::string& uri);

/// What `resources/read` gives. Throws as `RunTool` does.
std::string read_page(const std::string& uri, const Workplace& workplace, const Call& call);

}  // namespace embedded::serve
