// Where an index is stored: an SQLite file or a PostgreSQL database.
#pragma once

#include "host/index/index.h"

#include <memory>
#include <string>

namespace host {

/// The index at `place`: a path, or the address of a server (`is_server`). In a server it is that of `repository`, which
/// may be empty for an import: the folder of the repository names it then. Throws as `server_index` does.
std::unique_ptr<Index> index_at(const std::string& place, const std::string& repository = "");

}  // namespace host
