#include "embedded/command/interruption.h"

#include <array>
#include <csignal>
#include <stdexcept>

namespace embedded {

namespace {

constexpr std::array SIGNALS{SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t requested = 0;

}  // namespace

Interruption::Interruption() {
    requested = 0;
    for (const int signal : SIGNALS) {
        std::signal(signal, [](int) { requested = 1; });
    }
}

Interruption::~Interruption() {
    for (const int signal : SIGNALS) {
        std::signal(signal, SIG_DFL);
    }
}

void Interruption::throw_if_requested(const std::string& message) {
    if (requested != 0) {
        throw std::runtime_error(message);
    }
}

}  // namespace embedded
