// A temporary file that is gone when the program ends, even if it crashes.
#pragma once

#include "host/files/file_descriptor.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace host {

/// A temporary file. Its name is removed at once, so the system frees it together with this object. Every function
/// throws `std::runtime_error` with one line that names the path when the file cannot be created, written or read.
class NamelessFile {
  public:
    /// Creates the file at `path`, in place of an existing one, and removes its name at once.
    explicit NamelessFile(const std::string& path);

    /// The size in bytes.
    [[nodiscard]] std::uint64_t size() const { return size_; }

    void append(std::string_view bytes);

    /// Fills `bytes` from `offset` on. It is a failure when the file has fewer bytes.
    void read(std::uint64_t offset, std::span<char> bytes) const;

    /// Returns the open file and gives up its ownership.
    FileDescriptor release() && { return std::move(file_); }

  private:
    std::string path_;
    FileDescriptor file_;
    std::uint64_t size_ = 0;
};

}  // namespace host
