// The names by which users give an index.
#pragma once

#include <string>

namespace host {

/// Whether `place` is the address of a database server ("postgresql://..."), or was meant to be one: it may hold a
/// password, so that messages must not quote it. Else it is the path of a file.
bool is_server(const std::string& place);

}  // namespace host
