// Texts that are kept on disk until they are wanted, so that memory does not grow with them.
#pragma once

#include "host/files/nameless_file.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace host {

/// A text in a spool.
struct SpooledText {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;  ///< in bytes; 0 for the empty text, which every spool holds

    [[nodiscard]] bool empty() const { return size == 0; }
};

/// Texts in a file that has no name. They may be added on several threads at once. Throws what `NamelessFile` throws.
class TextSpool {
  public:
    /// The file is made at `path`, as `NamelessFile` does.
    explicit TextSpool(const std::string& path) : file_(path) {}

    SpooledText add(std::string_view text);

    [[nodiscard]] std::string read(const SpooledText& text);

  private:
    void flush();

    NamelessFile file_;
    std::mutex mutex_;
    std::string end_;  // what has not been written yet
};

}  // namespace host
