// A pool of connections to an index that may be replaced at any time.
#pragma once

#include "host/index/index.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace host::serve {

/// Keeps connections to an index open from one call to the next. Safe to use from several threads.
class IndexConnections {
  public:
    /// Opens the index. Calls `on_replacement`, on the thread that calls `borrow`, when another index has replaced it.
    /// Throws what `Index::connect` throws.
    IndexConnections(std::shared_ptr<const Index> index, std::function<void()> on_replacement);

    /// Calls `use` with one consistent state of the current index. Calls the interrupt check `watch` every few
    /// milliseconds while the index is read, and from `Database::check_interrupt`. Throws what `Index::connect`,
    /// `IndexConnection::read`, `use` and `watch` throw.
    void borrow(const std::function<void()>& watch, const std::function<void(storage::Database&)>& use);

  private:
    std::unique_ptr<IndexConnection> take();
    void give_back(std::unique_ptr<IndexConnection> connection);
    // Notes the state of the index that an answer is from, and reports a replacement.
    void note(const std::string& state);

    static constexpr std::size_t MOST_KEPT = 16;

    const std::shared_ptr<const Index> index_;
    const std::function<void()> on_replacement_;
    std::mutex mutex_;
    std::string known_state_;
    std::vector<std::unique_ptr<IndexConnection>> idle_;
};

}  // namespace host::serve
