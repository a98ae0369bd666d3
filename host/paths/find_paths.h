// The files of an index that a path, a folder or a pattern stands for.
#pragma once

#include "host/files/checkout.h"
#include "host/index/database.h"

#include <span>
#include <string>
#include <vector>

namespace host {

/// A path that the index does not hold, and the file or folder that it was most likely meant to be.
struct Suggestion {
    std::string missing;  ///< as named
    std::string nearest;  ///< as `nearest_path` (nearest_path.h) finds it
};

/// What the named paths stand for in an index.
struct FoundPaths {
    std::vector<std::string> indexed;     ///< files of the index, in the order in which they were named, each once
    std::vector<std::string> missing;     ///< paths that the index knows neither as a file nor as a folder, as named
    std::vector<Suggestion> suggestions;  ///< for those of the first ten missing paths that something is near to
};

/// Looks `named` up: a path is a file of the index or a folder, which stands for the files below it in path order; "."
/// is the root of the repository. "./a//b/" is read as "a/b". What the index does not know so may be a `Glob`, which
/// stands for the files that it matches; and then a path or a `Glob` of this machine, absolute or relative to the
/// current folder, which is looked up by where it lies in the checkout, unless that is null. The empty path is no
/// folder. A row of `files` whose path is a blob or holds a NUL is no file: the queries cannot be asked for it. Throws
/// `IndexError`, and what `db.check_interrupt` throws.
FoundPaths find_paths(storage::Database& db, const Checkout* checkout, std::span<const std::string> named);

}  // namespace host
