// Opens an index where it is stored: in an SQLite file or a PostgreSQL database.
#pragma once

#include "host/index/index.h"

#include <memory>
#include <string>

namespace host {

/// Returns the index at `place`: the path of a file, or the address of a server (`is_server`). A server holds an index
/// for each repository; `repository` selects one. It may be empty for an import, which then takes the name of the
/// repository's folder. Throws what `server_index` throws.
std::unique_ptr<Index> index_at(const std::string& place, const std::string& repository = "");

}  // namespace host
