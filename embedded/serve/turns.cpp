#include "embedded/serve/turns.h"

#include <chrono>

namespace embedded::serve {

Turns::Turn::Turn(Turns& turns, Size size, const Call& call)
    : free_(size == Size::SMALL ? turns.small_ : turns.large_) {
    constexpr std::chrono::milliseconds LOOK(20);  // after a cancellation that often
    while (!free_.try_acquire_for(LOOK)) {
        call.check();
    }
}

}  // namespace embedded::serve
