// Definitions of what is declared more than once: prototypes, forward declarations.
#pragma once

#include "host/resolve/catalog.h"

#include <span>
#include <vector>

namespace host::resolve {

/// Returns the symbols with each that only announces a definition replaced by all definitions that it may announce, as
/// far as the repository has any. Each once, ascending.
std::vector<Symbol> definitions(const Catalog& catalog, std::span<const Symbol> symbols);

}  // namespace host::resolve
