// The files of a checkout.
#pragma once

#include <compare>
#include <cstdint>
#include <filesystem>
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
};

/// Returns the regular files below a folder that are not hidden, by path. Symbolic links are not followed. Files with a
/// name that no text can hold (control characters, no UTF-8), and folders that cannot be read, are left out.
std::vector<CheckoutFile> checkout_files(const std::filesystem::path& root);

}  // namespace host::git
