// References of the sources for which their documents have no token, or a wrong one.
//
// scip-python has no token for a name that is bound by `import f as _`, nor for one behind a module that passes it on
// (`messages.SUCCESS`), and takes a class that bears a name of the language, as Warning, for the language's own. The
// scopes and imports of the source tell what is meant how often.
#pragma once

#include "host/indexing/modules.h"
#include "host/scip/contents.h"
#include "host/scip/undeclared.h"

namespace host::scip {

/// Adds to the references of each file with counted texts what these lack. `undeclared` is what its documents do not
/// define (undeclared.h). Drops the counts.
void add_unseen_names(Contents& contents, indexing::Modules& modules, const UndeclaredByFile& undeclared);

}  // namespace host::scip
