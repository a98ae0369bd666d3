// What a writer of a page is told.
#pragma once

#include "host/serve/tools.h"

#include <string>

namespace host::serve {

/// The prompt as `prompts/list` gives it: it has somebody write a wiki page about files, and keeps them to what is
/// stated of these.
Sent write_wiki_page_prompt();

/// The page that the arguments of the prompt, which are texts, ask for. Throws `RpcError` that names the field.
PageRequest page_to_write(const Received& arguments);

/// What `prompts/get` gives. Throws `RpcError` where the index does not hold the paths, else as `RunTool` does.
std::string write_wiki_page(const PageRequest& request, const Workplace& workplace, const Call& call);

}  // namespace host::serve
