// The files of a checkout: those that Git would list, without running it or reading what configures it.
#pragma once

#include "host/files/checkout.h"
#include "host/git/attributes.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace host::git {

/// What the system says of a file. A file that is written to gets another stamp, unless the clock stood still.
struct FileStamp {
    std::int64_t size = 0;      ///< in bytes
    std::int64_t modified = 0;  ///< in nanoseconds since 1970
    std::int64_t changed = 0;   ///< likewise; when the file or what the system says of it changed last
    std::uint64_t number = 0;   ///< of the file on its disk

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

struct CheckoutFile {
    std::string path;  ///< relative to the root, segments separated by "/"
    FileStamp stamp;
    Origin origin;
};

/// Returns the regular files of a checkout, by path:
///
///   - where its root holds a `.git`: those that Git tracks, and those that no .gitignore and no .git/info/exclude says
///     to ignore, without what lies in other repositories inside of it, such as submodules;
///   - else all that are not hidden.
///
/// Symbolic links are not followed. Files with a name that no text can hold (control characters, no UTF-8), and folders
/// that cannot be read, are left out. Calls `check_interrupt` for each folder, and throws what that throws.
std::vector<CheckoutFile> checkout_files(const Checkout& checkout, const std::function<void()>& check_interrupt);

}  // namespace host::git
