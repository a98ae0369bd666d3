// Connections to an index that may be replaced at any time.
#pragma once

#include "host/index/index.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace host::serve {

/// Connections to an index, kept open from one call to the next. For any number of threads.
class IndexConnections {
  public:
    /// Throws what `Index::connect` throws. `on_replacement` is called, on the thread that borrows, when another index
    /// has taken the place of the one that was there.
    IndexConnections(std::shared_ptr<const Index> index, std::function<void()> on_replacement);

    /// Calls `use` with the index that is there now, in one state of it; `watch` is called every few milliseconds while it
    /// is read, and by `check_interrupt` of it. Throws what `Index::connect`, `IndexConnection::read`, `use` and `watch` throw.
    void borrow(const std::function<void()>& watch, const std::function<void(storage::Database&)>& use);

  private:
    std::unique_ptr<IndexConnection> take();
    void give_back(std::unique_ptr<IndexConnection> connection);
    // Notes which state an answer is from.
    void note(const std::string& state);

    static constexpr std::size_t MOST_KEPT = 16;

    const std::shared_ptr<const Index> index_;
    const std::function<void()> on_replacement_;
    std::mutex mutex_;
    std::string known_state_;
    std::vector<std::unique_ptr<IndexConnection>> idle_;
};

}  // namespace host::serve
