#include "host/command/interruption.h"

#include <cstddef>
#include <stdexcept>

namespace host {

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): all that a signal handler can write to
volatile std::sig_atomic_t requested = 0;

}  // namespace

Interruption::Interruption() {
    requested = 0;
    struct sigaction recording {};
    recording.sa_handler = [](int) { requested = 1; };
    recording.sa_flags = SA_RESTART;
    for (std::size_t at = 0; at < SIGNALS.size(); ++at) {
        sigaction(SIGNALS[at], nullptr, &previous_[at]);
        if (previous_[at].sa_handler != SIG_IGN) {
            sigaction(SIGNALS[at], &recording, nullptr);
        }
    }
}

Interruption::~Interruption() {
    for (std::size_t at = 0; at < SIGNALS.size(); ++at) {
        sigaction(SIGNALS[at], &previous_[at], nullptr);
    }
}

void Interruption::throw_if_requested(const std::string& message) {
    if (requested != 0) {
        throw std::runtime_error(message);
    }
}

}  // namespace host
