// A hash of the content of a file.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

struct XXH3_state_s;

namespace host {

/// Computes the 64-bit XXH3 of bytes that come piece by piece, as a signed integer. The value is never 0, so that 0 can
/// stand for an unknown content.
class ContentHash {
  public:
    ContentHash();

    void add(std::string_view bytes);

    /// Returns the hash of all bytes added so far.
    [[nodiscard]] std::int64_t value() const;

  private:
    struct Deleter {
        void operator()(XXH3_state_s* state) const;
    };
    std::unique_ptr<XXH3_state_s, Deleter> state_;
};

}  // namespace host
