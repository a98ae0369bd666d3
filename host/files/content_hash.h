// A number by which one content of a file is told from another.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

struct XXH3_state_s;

namespace host {

/// Hashes bytes that come piece by piece: XXH3, 64 bits, as a signed integer. The value is never 0, which is free to
/// stand for a content that nobody knows.
class ContentHash {
  public:
    ContentHash();

    void add(std::string_view bytes);

    /// Of all bytes that were added until now.
    [[nodiscard]] std::int64_t value() const;

  private:
    struct Deleter {
        void operator()(XXH3_state_s* state) const;
    };
    std::unique_ptr<XXH3_state_s, Deleter> state_;
};

}  // namespace host
