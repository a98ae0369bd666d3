// Stores texts on disk until they are needed, so that memory does not grow with them.
#pragma once

#include "host/files/nameless_file.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace host {

/// The position of a text in a spool.
struct SpooledText {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;  ///< in bytes; 0 for the empty text, which needs no spool

    [[nodiscard]] bool empty() const { return size == 0; }
};

/// Texts in a `NamelessFile`. Safe to use from several threads. Every function throws what `NamelessFile` throws.
class TextSpool {
  public:
    /// Creates the file at `path`.
    explicit TextSpool(const std::string& path) : file_(path) {}

    /// Appends a text and returns its position.
    SpooledText add(std::string_view text);

    /// Returns a text that was added to this spool.
    [[nodiscard]] std::string read(const SpooledText& text);

  private:
    void flush();

    NamelessFile file_;
    std::mutex mutex_;
    std::string end_;              // texts that are not written yet
    std::string read_;             // what was last read of the file
    std::uint64_t read_from_ = 0;  // where that begins
};

}  // namespace host
