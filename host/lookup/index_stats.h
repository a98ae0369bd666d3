// Statistics of an index, and the report of its import.
#pragma once

#include "host/index/database.h"
#include "host/indexing/import_report.h"

#include <cstdint>
#include <string>

namespace host {

struct IndexStats {
    std::string index;  ///< what it is called
    IndexOrigin origin;
    bool is_checked = false;  ///< whether all of it was read, and found whole
    indexing::ImportReport report;
};

/// Reads what the import of the index has noted. Throws `IndexError`, and `std::runtime_error` with one line that says
/// what to do when it has noted nothing.
IndexStats index_stats(storage::Database& db);

}  // namespace host
