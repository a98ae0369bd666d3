#include "host/command/progress_line.h"

#include <unistd.h>

#include <iostream>
#include <utility>

namespace host {

ProgressLine::ProgressLine(std::string what) : what_(std::move(what)), is_shown_(isatty(STDERR_FILENO) != 0) {}

ProgressLine::~ProgressLine() {
    clear();
}

void ProgressLine::show(std::int64_t done, std::int64_t total) {
    const std::int64_t percent = 100 * done / total;
    if (is_shown_ && percent != percent_) {
        std::cerr << '\r' << what_ << ": " << percent << " %" << std::flush;
        percent_ = percent;
    }
}

void ProgressLine::clear() {
    if (percent_ >= 0) {
        std::cerr << "\r\033[K" << std::flush;
        percent_ = -1;
    }
}

}  // namespace host
