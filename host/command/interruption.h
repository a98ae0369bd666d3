// Turns signals such as Ctrl-C into an exception.
#pragma once

#include <array>
#include <csignal>
#include <string>

namespace host {

/// While an object of this class lives, SIGINT, SIGTERM and SIGHUP are only recorded, and `throw_if_requested` throws.
/// So an interrupted command cleans up. Signals that were ignored stay ignored. The destructor restores the previous
/// handlers. At most one object may exist at a time.
class Interruption {
  public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Throws `std::runtime_error(message)` when a signal was recorded.
    static void throw_if_requested(const std::string& message);

  private:
    static constexpr std::array SIGNALS{SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, SIGNALS.size()> previous_{};
};

}  // namespace host
