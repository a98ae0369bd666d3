// The rows of an index, written as the import has found them.
#pragma once

#include "embedded/files/text_spool.h"
#include "embedded/index/row_writer.h"
#include "embedded/scip/gathered.h"
#include "embedded/scip/import_report.h"
#include "embedded/scip/references.h"

#include <functional>
#include <string>

namespace embedded::scip {

/// Called after each file, with the number of its documents.
using AfterFile = std::function<void(std::size_t documents)>;

/// Fills a new index, and puts into `report` how many rows there are and
/// what the references say of the index as a whole (references to nowhere, missing modules, lost tests). `references`
/// are those of `gathered`. Throws `IndexError`, and what the spool and `after_file` throw.
void write_rows(RowWriter& out, const Gathered& gathered, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report);

}  // namespace embedded::scip
