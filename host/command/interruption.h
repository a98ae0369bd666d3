// Ctrl-C as an exception instead of a sudden death.
#pragma once

#include <array>
#include <csignal>
#include <string>

namespace host {

/// While one lives, SIGINT, SIGTERM and SIGHUP are only noted, and those that were ignored stay ignored;
/// `throw_if_requested` turns a noted one into an exception, at a point where everything can be cleaned up. One at a
/// time; at its end everything is as it was.
class Interruption {
  public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Throws `std::runtime_error(message)` when such a signal has arrived.
    static void throw_if_requested(const std::string& message);

  private:
    static constexpr std::array SIGNALS{SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, SIGNALS.size()> before_{};
};

}  // namespace host
