// The names that a language has built in.
#pragma once

#include "host/scip/tokens.h"

#include <string>
#include <unordered_map>

namespace host::scip {

/// The names of what Python itself declares, as far as documents mention it, by its symbol.
std::unordered_map<SymbolNumber, std::string> built_in_names(const SymbolTable& symbols);

}  // namespace host::scip
