// Connections to an index that may be replaced at any time.
#pragma once

#include "embedded/sqlite/connection.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace embedded::serve {

/// Connections to the index at a path, kept open from one call to the next. For any number of threads.
class IndexConnections {
  public:
    /// Throws what `open_index` throws. `on_replacement` is called, on the thread that borrows, when another index
    /// has taken the place of the one that was there.
    IndexConnections(std::string path, std::function<void()> on_replacement);

    /// Calls `use` with a connection to the index that is there now, whose statements call `watch` every few
    /// milliseconds. False when another index has taken its place meanwhile. Throws what `open_index`, `use` and `watch`
    /// throw.
    bool borrow(const std::function<void()>& watch, const std::function<void(const Connection&)>& use);

  private:
    // What tells one file from another.
    struct Identity {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::int64_t size = 0;
        std::int64_t seconds = 0;  // when it was last written
        std::int64_t nanoseconds = 0;

        friend bool operator==(const Identity&, const Identity&) = default;
    };
    [[nodiscard]] Identity identity() const;

    std::unique_ptr<Connection> take(const Identity& now);
    void give_back(std::unique_ptr<Connection> connection, const Identity& of);

    static constexpr std::size_t MOST_KEPT = 16;

    const std::string path_;
    const std::function<void()> on_replacement_;
    std::mutex mutex_;
    Identity known_;
    std::vector<std::unique_ptr<Connection>> idle_;  // to the file that is known
};

}  // namespace embedded::serve
