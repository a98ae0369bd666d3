// Modules of Python that are imported relative to another one.
#pragma once

#include "host/indexing/extraction.h"
#include "host/scip/tokens.h"

#include <vector>

namespace host::scip {

/// Lets the symbols that nobody defines stand for modules whose names end as theirs do. scip-python names a module that
/// is imported relative to another one by what the import says, without its dots; where one module alone ends so, that
/// is the one.
void add_relative_modules(std::vector<indexing::ExtractedFile>& files, const SymbolTable& symbols);

}  // namespace host::scip
