// The rows of an index, written as the import has found them.
#pragma once

#include "embedded/files/text_spool.h"
#include "embedded/scip/gathered.h"
#include "embedded/scip/import_report.h"
#include "embedded/sqlite/connection.h"

#include <functional>
#include <string>

namespace embedded::scip {

/// Called after each file, with the number of its documents.
using AfterFile = std::function<void(std::size_t documents)>;

/// Fills a database that has the schema of an index and no rows, and puts into `report` how many rows there are and
/// what the references say of the index as a whole (references to nowhere, missing modules, lost tests). Throws
/// `SqliteError`, and what the spool and `after_file` throw.
void write_rows(const Connection& out, const Gathered& gathered, TextSpool& spool, const AfterFile& after_file,
                ImportReport& report);

}  // namespace embedded::scip
