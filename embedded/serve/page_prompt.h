// What a writer of a page is told.
#pragma once

#include "embedded/serve/tools.h"

#include <string>

namespace embedded::serve {

/// The prompt as `prompts/list` gives it: it has somebody write a wiki page about files, and keeps them to what is
/// stated of these.
Sent write_wiki_page_prompt();

/// The paths and the budget in the arguments of the prompt, which are texts. Throws `RpcError` that names the field.
PageRequest page_to_write(const Received& arguments);

/// What `prompts/get` gives. Throws as `RunTool` does.
std::string write_wiki_page(const PageRequest& request, const Workplace& workplace, const Call& call);

}  // namespace embedded::serve
