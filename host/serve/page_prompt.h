// The prompt that has a model write a wiki page.
#pragma once

#include "host/serve/tools.h"

#include <string>

namespace host::serve {

/// Returns the prompt as an entry of `prompts/list`. It asks for a wiki page about files, restricted to what is stated
/// about them.
Sent write_wiki_page_prompt();

/// Reads the arguments of the prompt, which are strings. Throws `RpcError` that names the field.
PageRequest page_to_write(const Received& arguments);

/// Returns the result of `prompts/get`. Throws `RpcError` when the index holds none of the paths, and what `RunTool`
/// throws.
std::string write_wiki_page(const PageRequest& request, const ToolContext& context, const Call& call);

}  // namespace host::serve
