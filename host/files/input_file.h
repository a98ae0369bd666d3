// An input file or pipe that is read piece by piece.
#pragma once

#include "host/files/file_descriptor.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace host {

/// A file that is open for reading, or a copy of all that a pipe wrote. Memory is bounded by the largest piece that is
/// requested.
class InputFile {
  public:
    /// Opens the file at `path`; "-" is standard input. The output of a pipe, a socket or a terminal is first copied to
    /// its end, into a `NamelessFile` at `copy_path`. Calls `check_interrupt` at least ten times a second meanwhile,
    /// and throws what it throws. Throws `std::runtime_error` with one line that names the file and says why it cannot
    /// be read.
    InputFile(const std::string& path, const std::string& copy_path, const std::function<void()>& check_interrupt);

    /// The path as given; "standard input" for "-".
    [[nodiscard]] const std::string& name() const { return name_; }
    /// The size in bytes when the file was opened or copied.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// Returns `size` bytes from `offset` on, or fewer at the end of the file. `offset` is at most `size()`. Bytes that
    /// were appended after the file was opened do not count. Valid until the next call. Throws what the constructor
    /// throws.
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
