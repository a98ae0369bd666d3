// The report of an import as text for people.
#pragma once

#include "host/indexing/import_report.h"

#include <iosfwd>
#include <string>

namespace host::indexing {

// Both functions escape control characters.

/// Writes one line about what was written to the index called `index`.
void write_made(std::ostream& out, const std::string& index, const ImportReport& report);

/// Writes one line for each finding: what the import could not use, what the references reveal about the SCIP file, and
/// what to do about it. Writes nothing when there is no finding.
void write_findings(std::ostream& out, const ImportReport& report);

}  // namespace host::indexing
