// A file that is read piece by piece.
#pragma once

#include "embedded/files/file_descriptor.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded {

/// A regular file, open for reading. Takes as much memory as the largest piece that is asked for.
class InputFile {
  public:
    /// Throws `std::runtime_error` with one line that names the file and says why it cannot be read.
    explicit InputFile(const std::string& path);

    [[nodiscard]] const std::string& path() const { return path_; }
    /// In bytes, when it was opened.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// The `size` bytes from `offset` (at most `size()`) on, or fewer where the file ends before: what has been added
    /// since it was opened does not count. Valid until the next call. Throws as the constructor does.
    std::string_view read(std::size_t offset, std::size_t size);

  private:
    void move_window(std::size_t offset, std::size_t size);

    std::string path_;
    FileDescriptor file_;
    std::size_t size_ = 0;
    std::string window_;  // a part of the file
    std::size_t window_offset_ = 0;
};

}  // namespace embedded
