// The report of an import as JSON, the form in which an index stores it.
#pragma once

#include "host/indexing/import_report.h"

#include <string>
#include <string_view>

namespace host::indexing {

/// Returns the report as one JSON object whose members are named like its fields. Bytes that are not UTF-8 become
/// U+FFFD.
std::string to_json(const ImportReport& report);

/// Reads the report that `to_json` wrote. Throws `std::invalid_argument` for any other text.
ImportReport read_report(std::string_view json);

}  // namespace host::indexing
