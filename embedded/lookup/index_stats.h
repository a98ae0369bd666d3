// What an index is made of, and how it was made.
#pragma once

#include "embedded/scip/import_report.h"
#include "embedded/sqlite/connection.h"

#include <cstdint>
#include <string>

namespace embedded {

struct IndexStats {
    std::string index;       ///< the path that it was opened with
    std::int64_t bytes = 0;  ///< of its file
    std::string made;        ///< when its file was written, in UTC: "2026-11-24T10:53:02Z"
    scip::ImportReport report;
};

/// Reads what the import of the index has noted. Throws `SqliteError`, and `std::runtime_error` with one line that says
/// what to do when the import has noted nothing, or the file is gone.
IndexStats index_stats(const Connection& index);

}  // namespace embedded
