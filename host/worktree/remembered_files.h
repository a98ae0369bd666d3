// What an index was made of: the files with what the system said of them, so that a change is seen without reading.
#pragma once

#include "host/git/checkout_files.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host::worktree {

struct RememberedFile {
    std::string path;
    git::FileStamp stamp;           ///< all zero for a file that had just changed: its next change may not show
    std::int64_t content_hash = 0;  ///< 0 when it could not be read
    std::int64_t unresolved = 0;    ///< of a source: name tokens that lead to nothing in the checkout
};

struct RememberedFiles {
    /// What tells the index and the program that made it from others.
    std::string origin;
    std::vector<RememberedFile> files;  ///< by path
};

/// Returns what was written at a path; nothing when that is not there, or is not what this program wrote.
RememberedFiles read_remembered(const std::string& path);

/// Writes in place of what is there, at once. Does nothing when it cannot: all is read again then.
void write_remembered(const std::string& path, const RememberedFiles& remembered);

}  // namespace host::worktree
