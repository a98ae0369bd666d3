// The progress of an import.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

namespace host::indexing {

/// Called repeatedly during an import with the number of steps that are done; `total` is never 0. May throw, which ends
/// the import. It is called for the last time before the new index replaces the old one.
using OnProgress = std::function<void(std::int64_t done, std::int64_t total)>;

/// Counts the steps of an import and reports them.
class Progress {
  public:
    /// `on_progress` may be empty.
    explicit Progress(OnProgress on_progress) : on_progress_(std::move(on_progress)) {}

    void expect(std::size_t total) { total_ = std::max<std::int64_t>(static_cast<std::int64_t>(total), 1); }

    void advance(std::size_t steps) {
        done_ += static_cast<std::int64_t>(steps);
        report();
    }

    void report() const {
        if (on_progress_) {
            on_progress_(done_, total_);
        }
    }

  private:
    OnProgress on_progress_;
    std::int64_t done_ = 0;
    std::int64_t total_ = 1;
};

}  // namespace host::indexing
