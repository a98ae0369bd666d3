// What may stand in the place of an argument of which the beginning is typed.
#pragma once

#include "host/serve/tools.h"

#include <string>
#include <vector>

namespace host::serve {

/// What is to be completed, once it is checked.
struct Completion {
    std::vector<std::string> values = {};  ///< all that the argument is likely to be, unless it is a path
    bool is_path = false;
    std::string before = {};     ///< what stands before the path: lines with others
    std::string beginning = {};  ///< of the path or the value
};

/// The completion that these parameters of `completion/complete` ask for: of the path of a page, or of an argument of the
/// prompt. Throws `RpcError` that names the field.
Completion completion_of(const Received& params);

/// What `completion/complete` gives: the first hundred values, and how many there are. Throws as `RunTool` does.
std::string completed(const Completion& completion, const Workplace& workplace, const Call& call);

}  // namespace host::serve
