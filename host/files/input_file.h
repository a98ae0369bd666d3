// A file that is read piece by piece.
#pragma once

#include "host/files/file_descriptor.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace host {

/// A file, open for reading, or everything that came out of a pipe. Takes as much memory as the largest piece that is
/// asked for.
class InputFile {
  public:
    /// Opens the file at `path`; "-" is standard input. What a pipe, a socket or a terminal gives is first copied to
    /// its end into a file without a name, made at `copy_path`; in the meantime `look` is called about ten times a
    /// second or more, and what it throws passes through. Throws `std::runtime_error` with one line that names the file
    /// and says why it cannot be read.
    InputFile(const std::string& path, const std::string& copy_path, const std::function<void()>& look);

    /// As given; "standard input" for "-".
    [[nodiscard]] const std::string& name() const { return name_; }
    /// In bytes, when it was opened or copied.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// The `size` bytes from `offset` (at most `size()`) on, or fewer where the file ends before: what has been added
    /// since it was opened does not count. Valid until the next call. Throws as the constructor does.
    std::string_view read(std::size_t offset, std::size_t size);

  private:
    void move_window(std::size_t offset, std::size_t size);

    std::string name_;
    FileDescriptor file_;
    std::size_t size_ = 0;
    std::string window_;  // a part of the file
    std::size_t window_offset_ = 0;
};

}  // namespace host
