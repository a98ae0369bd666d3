// The modules of a repository, as its SCIP files define them.
#pragma once

#include "host/indexing/modules.h"
#include "host/scip/contents.h"
#include "host/sources/source_reader.h"

namespace host::scip {

/// The modules whose symbols documents define, and what these declare at their top. Both must outlive the result.
indexing::Modules modules_of(const Contents& contents, const sources::Sources& sources);

}  // namespace host::scip
