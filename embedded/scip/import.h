// The import of a SCIP file: from what an indexer has found in a repository, and what its sources say, to an index that
// can be queried.
//
// Every path of the SCIP file becomes a file, every global symbol that it defines a declaration, and what its other
// tokens name become edges (rows.h, references.h). A file that others import without naming a declaration of it is a
// declaration itself: a module.
#pragma once

#include "embedded/scip/import_report.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace embedded::scip {

/// Told again and again, from the beginning until the new index takes its place, how many steps of how many are done;
/// `total` is never 0. A document is two steps: being read, and being written. May throw, which ends the import.
using ImportProgress = std::function<void(std::int64_t done, std::int64_t total)>;

struct ImportRequest {
    std::string scip_path;
    std::string index_path;
    /// The folder that the sources are read from; by default the one that the SCIP file names as its root, where that
    /// is a folder of this machine. Without either the import does without sources.
    std::optional<std::string> checkout;
};

/// Makes the index of a SCIP file at the index's path, in place of any that is there. `progress` may be empty.
///
/// The new index replaces the old when it is complete and durable. Until then nothing of the old one changes: not
/// when the import fails, is killed, or is interrupted by an exception from `progress`, which comes out as it went
/// in. Two imports into one index do not run at once: the second fails. A SCIP file without any usable document makes
/// an empty index where there is none, but replaces none: it was hardly meant to.
///
/// Equal SCIP files at equal paths give, with equal sources, equal bytes. Ids start at 1: files by path, declarations
/// by file, first line and order of first definition; edges stand by source file, target and resolution. A source that
/// is damaged, too large, no UTF-8 or not there costs what it would have said and nothing else. Memory grows with
/// symbols and declarations, and with pairs of a file and what it mentions, neither with occurrences nor with sources.
///
/// Throws `std::runtime_error` with one line that names the file at fault and says what to do.
ImportReport import_scip(const ImportRequest& request, const ImportProgress& progress);

}  // namespace embedded::scip
