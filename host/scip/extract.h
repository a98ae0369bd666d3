// What SCIP files and sources say of a repository, put together.
#pragma once

#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/scip/contents.h"
#include "host/sources/source_reader.h"

#include <functional>

namespace host::scip {

/// The extraction of what documents and sources hold; `report` is told what became of the sources. Calls
/// `check_interrupt` after each file, and throws what that throws.
indexing::Extraction extract(Contents contents, const sources::Sources& sources,
                             const std::function<void()>& check_interrupt, indexing::ImportReport& report);

}  // namespace host::scip
