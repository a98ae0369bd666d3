// Ctrl-C as an exception instead of a sudden death.
#pragma once

#include <string>

namespace embedded {

/// While one lives, SIGINT, SIGTERM and SIGHUP are only noted; `throw_if_requested` turns a noted one into an
/// exception, at a point where everything can be cleaned up. One at a time.
class Interruption {
  public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Throws `std::runtime_error(message)` when such a signal has arrived.
    static void throw_if_requested(const std::string& message);
};

}  // namespace embedded
