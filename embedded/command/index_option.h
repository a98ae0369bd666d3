// The index that a command reads.
#pragma once

#include "embedded/sqlite/connection.h"

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace embedded {

/// Adds "--index FILE.db", which is required.
void add_index_option(CLI::App& command, std::string& path);

/// Opens the index and has `read` read it. Throws what `read` throws; where the index is at fault it is a
/// `std::runtime_error` with one line that says what is wrong with it and what can be done about that.
void read_index(const std::string& path, const std::function<void(Connection)>& read);

}  // namespace embedded
