// A file that nothing is left of, whatever happens to the program.
#pragma once

#include "host/files/file_descriptor.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace host {

/// A file that has a name for a moment only, and goes with this object. Throws `std::runtime_error` with one line that
/// names the path when it cannot be made, written or read.
class NamelessFile {
  public:
    /// Makes the file at `path`, in place of any that is there, and takes its name away at once.
    explicit NamelessFile(const std::string& path);

    /// In bytes.
    [[nodiscard]] std::uint64_t size() const { return size_; }

    void append(std::string_view bytes);

    /// Fills `bytes` with those from `offset` on; it is a failure when the file has fewer.
    void read(std::uint64_t offset, std::span<char> bytes) const;

    /// The open file, which this object then has no longer.
    FileDescriptor release() && { return std::move(file_); }

  private:
    std::string path_;
    FileDescriptor file_;
    std::uint64_t size_ = 0;
};

}  // namespace host
