// Texts that are kept on disk until they are wanted, so that memory does not grow with them.
#pragma once

#include "embedded/files/file_descriptor.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace embedded {

/// A text in a spool.
struct SpooledText {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;  ///< in bytes; 0 for the empty text, which every spool holds

    [[nodiscard]] bool empty() const { return size == 0; }
};

/// A file without a name, which goes with the spool. Texts may be added on several threads at once. Throws
/// `std::runtime_error` with one line when the file cannot be made, written or read.
class TextSpool {
  public:
    /// Makes the file at `path`, in place of any that is there, and takes its name away at once.
    explicit TextSpool(const std::string& path);

    SpooledText add(std::string_view text);

    [[nodiscard]] std::string read(const SpooledText& text);

  private:
    void flush();

    std::string path_;
    FileDescriptor file_;
    std::mutex mutex_;
    std::string end_;            // what has not been written yet
    std::uint64_t written_ = 0;  // bytes before it
};

}  // namespace embedded
