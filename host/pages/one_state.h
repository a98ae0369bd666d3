// Several connections to one state of an index.
#pragma once

#include "host/index/index.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace host::pages {

/// Reads one state of an index from several threads, each through a connection of its own.
class OneState {
  public:
    /// Connects as many times as there are cores, at most `most` times and at least once. An index that is replaced
    /// meanwhile has fewer connections, all of them to the state that it had at first. `check_interrupt` is called on
    /// any thread. Throws what `Index::connect` and `IndexConnection::read` throw.
    OneState(const Index& index, std::size_t most, const CheckInterrupt& check_interrupt);

    /// The state, through the first connection.
    [[nodiscard]] storage::Database& database() const { return *databases_.front(); }

    /// Calls `work` once for each number below `count`, in any order and on several threads; `on_done` now and then
    /// with the number of calls that have ended. Throws what `on_all_cores` throws.
    void for_each(std::size_t count, const std::function<void(std::size_t at, storage::Database& db)>& work,
                  const std::function<void(std::size_t done)>& on_done) const;

  private:
    std::vector<std::unique_ptr<IndexConnection>> connections_;
    std::vector<std::unique_ptr<storage::Database>> databases_;
};

}  // namespace host::pages
