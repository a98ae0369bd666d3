// Which kind of index lies where.
#pragma once

#include "host/index/index.h"

#include <memory>
#include <string>

namespace host {

/// Whether a place is the address of a database server ("postgresql://..."), or is meant to be one: it may hold a password,
/// and is not to be quoted as a path would be. Else it is the path of a file.
bool is_server(const std::string& place);

/// The index at a place. In a server it is that of a repository, whose name may be empty to import: the folder of the
/// repository tells it then. Throws as `server_index` does.
std::unique_ptr<Index> index_at(const std::string& place, const std::string& repository = "");

}  // namespace host
