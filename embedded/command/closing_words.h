// What an import says when it is done.
#pragma once

#include "embedded/scip/import_report.h"

#include <iosfwd>
#include <string>

namespace embedded {

/// Writes what was made at `index`, on one line; and on a line each, only where there is something to say, what the
/// import could not use, what its references say of how the SCIP file was made, and what to do about it.
void write_closing_words(std::ostream& out, const std::string& index, const scip::ImportReport& report);

}  // namespace embedded
