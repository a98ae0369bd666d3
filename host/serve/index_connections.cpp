#include "host/serve/index_connections.h"

#include <utility>

namespace host::serve {

IndexConnections::IndexConnections(std::shared_ptr<const Index> index, std::function<void()> on_replacement)
    : index_(std::move(index)), on_replacement_(std::move(on_replacement)) {
    idle_.push_back(index_->connect());
    known_state_ = idle_.back()->read()->origin().state;
}

void IndexConnections::borrow(const std::function<void()>& watch, const std::function<void(storage::Database&)>& use) {
    std::unique_ptr<IndexConnection> connection = take();
    connection->watch(watch);
    try {
        const std::unique_ptr<storage::Database> db = connection->read();
        db->watch(watch);
        note(db->origin().state);
        use(*db);
    } catch (...) {
        give_back(std::move(connection));
        throw;
    }
    give_back(std::move(connection));
}

std::unique_ptr<IndexConnection> IndexConnections::take() {
    {
        const std::scoped_lock lock(mutex_);
        while (!idle_.empty()) {
            std::unique_ptr<IndexConnection> connection = std::move(idle_.back());
            idle_.pop_back();
            if (connection->is_current()) {
                return connection;
            }
        }
    }
    return index_->connect();
}

void IndexConnections::give_back(std::unique_ptr<IndexConnection> connection) {
    connection->watch([] {});
    const std::scoped_lock lock(mutex_);
    if (idle_.size() < MOST_KEPT && connection->is_current()) {
        idle_.push_back(std::move(connection));
    }
}

void IndexConnections::note(const std::string& state) {
    {
        const std::scoped_lock lock(mutex_);
        if (state == known_state_) {
            return;
        }
        known_state_ = state;
    }
    on_replacement_();
}

}  // namespace host::serve
