// The progress of long work on a terminal.
#pragma once

#include <cstdint>
#include <string>

namespace host {

/// Shows progress on one line of a terminal; shows nothing where standard error is none. The destructor removes the
/// line.
class ProgressLine {
  public:
    /// `what` stands before the share of the work that is done.
    explicit ProgressLine(std::string what);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// `total` is not 0.
    void show(std::int64_t done, std::int64_t total);
    /// Removes the line; `show` brings it back.
    void clear();

  private:
    const std::string what_;
    const bool is_shown_;
    std::int64_t percent_ = -1;
};

}  // namespace host
