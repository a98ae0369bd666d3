// Declarations of the sources that their documents lack.
//
// scip-typescript calls a name local that comes out of an object or an array (`export const { useUser } = api`), and
// scip-python takes a class or an attribute that bears a name of the language for the language's own, and an attribute
// that `__slots__` lists for its class. The source says that it is a declaration.
#pragma once

#include "host/files/checkout.h"
#include "host/scip/contents.h"
#include "host/sources/source_reader.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace host::scip {

/// A declaration that its document does not define, or as something local.
struct Undeclared {
    sources::Position name;
    SymbolNumber symbol = 0;  ///< that it has now
};

using UndeclaredByFile = std::map<std::string, std::vector<Undeclared>, std::less<>>;

/// Adds to each file of a language whose files are modules a definition for every declaration at the top of its source
/// for which it has none, and for such attributes of its classes. A source that is damaged adds nothing.
UndeclaredByFile add_undeclared(Contents& contents, const sources::Sources& sources);

/// Counts the references to these within their own files, where documents call them local: reads again the documents
/// of these files. Throws what `ScipFile` throws.
void count_locals(std::span<const PlacedScipFile> files, const UndeclaredByFile& undeclared, const Checkout& checkout,
                  Contents& contents);

}  // namespace host::scip
