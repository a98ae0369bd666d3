// The report of an import as text, as the index keeps it.
#pragma once

#include "host/indexing/import_report.h"

#include <string>
#include <string_view>

namespace host::indexing {

/// A report as one JSON object whose members are named as its fields. Bytes that are not UTF-8 become U+FFFD.
std::string written(const ImportReport& report);

/// The report that such a text stands for. Throws `std::invalid_argument` for any other text.
ImportReport read_report(std::string_view text);

}  // namespace host::indexing
