// What differs between two states of a file for those who look up names in it.
#pragma once

#include "host/resolve/changed_names.h"
#include "host/resolve/repository.h"

#include <span>

namespace host::resolve {

/// Adds the names of the declarations and imports that only one state has, or that state different things. Two are the
/// same if they have the same name in the same declaration; of several, if they come equally late.
///
/// Returns false where no names tell how far a change can be seen: the file is of another package, language or build,
/// takes all names of other modules than before, has another file as its module, or may declare what all files see.
/// `files` are all of the repository, which has them before and now.
[[nodiscard]] bool add_differences(const File& before, const File& now, std::span<const File> files,
                                   ChangedNames& names);

}  // namespace host::resolve
