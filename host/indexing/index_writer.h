// Writes the rows of an index.
#pragma once

#include "host/files/text_spool.h"
#include "host/index/row_writer.h"
#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/indexing/references.h"

#include <cstddef>
#include <functional>

namespace host::indexing {

/// Called after each file, with what its `ExtractedFile::steps` adds to the progress. What it throws ends the writing.
using AfterFile = std::function<void(std::size_t steps)>;

/// Writes every row of an extraction, and puts into `report` how many there are and what the references say of the
/// index as a whole (references to nowhere, missing modules, lost tests). `references` are those of `extraction`, whose
/// texts are in `spool`. A file that others name as a module, without naming a declaration of it, is a declaration of
/// kind "module" itself. Throws `IndexError`, and what the spool and `after_file` throw.
///
/// Ids start at 1: files in the order of the extraction, declarations by file, its module first; edges stand by source
/// file, target and resolution.
void write_rows(RowWriter& out, const Extraction& extraction, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report);

}  // namespace host::indexing
