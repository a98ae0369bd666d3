// What the answers about resources have in common.
#pragma once

#include "host/serve/json_rpc.h"

#include <string>

namespace host::serve {

/// Returns the error for an address at which there is nothing to read.
RpcError no_such_resource(const std::string& uri, const std::string& reason);

/// Returns the result of `resources/read` for Markdown.
std::string resource_contents(const std::string& uri, const std::string& markdown);

}  // namespace host::serve
