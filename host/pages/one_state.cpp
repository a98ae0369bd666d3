#include "host/pages/one_state.h"

#include "host/threads/all_cores.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <utility>

namespace host::pages {

OneState::OneState(const Index& index, std::size_t most, const CheckInterrupt& check_interrupt) {
    const std::size_t wanted = std::min<std::size_t>(std::max(1U, std::thread::hardware_concurrency()), most);
    std::string state;
    do {
        std::unique_ptr<IndexConnection> connection = index.connect();
        connection->watch(check_interrupt);
        std::unique_ptr<storage::Database> db = connection->read();
        db->watch(check_interrupt);
        const std::string found = db->origin().state;
        if (!databases_.empty() && found != state) {
            return;
        }
        state = found;
        connections_.push_back(std::move(connection));
        databases_.push_back(std::move(db));
    } while (databases_.size() < wanted);
}

void OneState::for_each(std::size_t count, const std::function<void(std::size_t at, storage::Database& db)>& work,
                        const std::function<void(std::size_t done)>& on_done) const {
    std::atomic<std::size_t> next = 0;
    std::atomic<std::size_t> done = 0;
    const auto work_with = [&](std::size_t connection) {
        for (std::size_t at = next++; at < count; at = next++) {
            work(at, *databases_[connection]);
            ++done;
        }
    };
    on_all_cores(databases_.size(), work_with, [&](std::size_t /*connections*/) { on_done(done); });
}

}  // namespace host::pages
