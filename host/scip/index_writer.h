// The rows of an index, written as the import has found them.
#pragma once

#include "host/files/text_spool.h"
#include "host/index/row_writer.h"
#include "host/scip/gathered.h"
#include "host/scip/import_report.h"
#include "host/scip/references.h"

#include <functional>
#include <string>

namespace host::scip {

/// Called after each file, with the number of its documents.
using AfterFile = std::function<void(std::size_t documents)>;

/// Fills a new index, and puts into `report` how many rows there are and
/// what the references say of the index as a whole (references to nowhere, missing modules, lost tests). `references`
/// are those of `gathered`. Throws `IndexError`, and what the spool and `after_file` throw.
void write_rows(RowWriter& out, const Gathered& gathered, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report);

}  // namespace host::scip
