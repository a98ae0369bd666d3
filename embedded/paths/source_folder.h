// Which folder the sources of an index are read from.
#pragma once

#include "embedded/index/database.h"

#include <string>

namespace embedded {

struct SourceFolder {
    std::string path;                  ///< empty when none is known
    bool is_the_users_choice = false;  ///< whether the user has named it, or works in it
};

/// The folder that the user has named, else the one that the index notes as the folder it was made in. That note is
/// taken as it is only from a file of this user, which nobody else could write, and where the user works in that very
/// folder; of another index it is the repository that the user works in, or the current folder. Throws `IndexError`.
SourceFolder source_folder(const std::string& named, storage::Database& db);

}  // namespace embedded
