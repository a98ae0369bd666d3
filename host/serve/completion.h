// Completes the arguments of the prompt and of page addresses.
#pragma once

#include "host/serve/tools.h"

#include <string>
#include <vector>

namespace host::serve {

/// A valid request for a completion.
struct Completion {
    std::vector<std::string> values = {};  ///< likely values of the argument, unless it is a path
    bool is_path = false;
    std::string before = {};     ///< the lines before the path, which hold other paths
    std::string beginning = {};  ///< the beginning of the path or the value
};

/// Reads the parameters of `completion/complete`, which ask for the path of a page or for an argument of the prompt.
/// Throws `RpcError` that names the field.
Completion completion_of(const Received& params);

/// Returns the result of `completion/complete`: the first hundred values, and how many there are. Throws what `RunTool`
/// throws.
std::string completed(const Completion& completion, const ToolContext& context, const Call& call);

}  // namespace host::serve
