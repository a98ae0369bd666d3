// Who may load the machine, and when.
#pragma once

#include "embedded/serve/call.h"

#include <cstddef>
#include <cstdint>
#include <semaphore>
#include <thread>

namespace embedded::serve {

enum class Size : std::uint8_t { SMALL, LARGE };

/// Lets as many large calls go on at once as there are cores, and as many small ones beside them: no small call waits
/// for a large one, and memory is taken for so many alone.
class Turns {
  public:
    /// A turn, which ends with this object. Throws `Cancelled` while it waits for it.
    class Turn {
      public:
        Turn(Turns& turns, Size size, const Call& call);
        ~Turn() { free_.release(); }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

      private:
        std::counting_semaphore<>& free_;
    };

  private:
    static std::ptrdiff_t cores() { return std::max<std::ptrdiff_t>(std::thread::hardware_concurrency(), 1); }

    std::counting_semaphore<> small_{cores()};
    std::counting_semaphore<> large_{cores()};
};

}  // namespace embedded::serve
