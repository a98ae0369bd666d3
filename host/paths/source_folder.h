// Which folder the sources of an index are read from.
#pragma once

#include "host/files/checkout.h"
#include "host/index/database.h"

#include <optional>
#include <string>

namespace host {

struct SourceFolder {
    std::string path;                  ///< empty when none is known
    bool is_the_users_choice = false;  ///< whether the user has named it, or works in it; else files may be withheld
};

/// The first of these that there is. Throws `IndexError`.
/// 1. The folder that the user has named.
/// 2. The folder that the index notes, where it is the current folder or the root of the repository around that.
/// 3. The folder that the index notes, where the index is a file of this user that others may not write to.
/// 4. For any other index, the root of the repository around the current folder, or that folder.
/// The user has chosen the first two.
SourceFolder source_folder(const std::string& named, storage::Database& db);

/// Returns the checkout in that folder; none when there is no such folder. Throws `IndexError`.
std::optional<Checkout> source_checkout(const std::string& named, storage::Database& db);

}  // namespace host
