// The report of an import in words.
#pragma once

#include "host/indexing/import_report.h"

#include <iosfwd>
#include <string>

namespace host::indexing {

// Control characters are written out.

/// Writes what was made at `index`, on one line.
void write_made(std::ostream& out, const std::string& index, const ImportReport& report);

/// Writes on a line each, only where there is something to say, what the import could not use, what its references say
/// of how the SCIP file was made, and what to do about it.
void write_findings(std::ostream& out, const ImportReport& report);

}  // namespace host::indexing
