// The index that a command reads.
#pragma once

#include "embedded/index/database.h"

#include <exception>
#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace embedded {

/// Adds "--index FILE.db", which is required.
void add_index_option(CLI::App& command, std::string& path);

/// Adds "--checkout DIR", which may be left out.
void add_checkout_option(CLI::App& command, std::string& path);

/// The line that is said of a failure to open the index of this name or to read from it: where the index is at fault, what
/// is wrong with it and what can be done about that; else what the failure says.
std::string failure_to_read(const std::string& index, const std::exception& failure);

/// Opens the index and has `read` read it. Throws what `read` throws; where the index is at fault it is a
/// `std::runtime_error` with the line of `failure_to_read`.
void read_index(const std::string& path, const std::function<void(storage::Database&)>& read);

}  // namespace embedded
