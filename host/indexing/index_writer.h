// Writes the rows of an index.
#pragma once

#include "host/files/text_spool.h"
#include "host/index/row_writer.h"
#include "host/index/rows.h"
#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/indexing/references.h"

#include <cstddef>
#include <functional>

namespace host::indexing {

/// Called after each file with the steps that it adds to the progress (`ExtractedFile::steps`). May throw, which ends
/// `write_rows`.
using AfterFile = std::function<void(std::size_t steps)>;

/// Writes every row of an extraction. Adds to `report` the numbers of rows and the findings about references
/// (findings.h). `references` are those of `extraction`; the texts of `extraction` are in `spool`.
///
/// A file gets a declaration of kind "module" when another file names it as a module and none of its declarations.
///
/// Ids are those of `RowIds` (file_rows.h) with this `room`. Edges are ordered by source file, target and resolution.
/// Throws `IndexError`, and what `spool` and `after_file` throw.
void write_rows(RowWriter& out, const Extraction& extraction, const References& references, TextSpool& spool,
                RowId room, const AfterFile& after_file, ImportReport& report);

}  // namespace host::indexing
