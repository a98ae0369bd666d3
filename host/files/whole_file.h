// Reads small files at once.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace host {

/// Returns the bytes of the file at `path`; none when nothing is there. Never waits on a pipe or a device. Throws
/// `std::runtime_error` with one line that names the path when it is no regular file, is larger than `most` bytes, or
/// cannot be read.
std::optional<std::string> whole_file(const std::string& path, std::size_t most);

}  // namespace host
