// Completes a path whose beginning a user has typed.
#pragma once

#include "host/index/database.h"

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The files of the index whose paths begin so, and in place of those that lie in a folder beyond that the folder
/// alone, with "/" at its end: "src/a" gives "src/app.ts" and "src/api/". In path order. Throws `IndexError`.
std::vector<std::string> completed_paths(storage::Database& db, std::string_view beginning);

}  // namespace host
