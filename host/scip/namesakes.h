// Chooses between declarations that share a symbol.
//
// The symbols of a package without a name begin at the folder of its project, and a SCIP file may hold several such
// projects: `index.ts`/main(). is then the symbol of each one's.
#pragma once

#include "host/scip/contents.h"
#include "host/sources/source_reader.h"

namespace host::scip {

/// Lets each reference to a symbol that several projects share lead to the file's own declaration, else to that of a
/// file that it has names from; where neither tells, to every one, which makes it ambiguous.
void choose_namesakes(Contents& contents, const sources::Sources& sources);

}  // namespace host::scip
