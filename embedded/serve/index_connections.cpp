#include "embedded/serve/index_connections.h"

#include "embedded/sqlite/index.h"

#include <sys/stat.h>

#include <utility>

namespace embedded::serve {

IndexConnections::IndexConnections(std::string path, std::function<void()> on_replacement)
    : path_(std::move(path)), on_replacement_(std::move(on_replacement)), known_(identity()) {
    idle_.push_back(std::make_unique<Connection>(open_index(path_)));
}

bool IndexConnections::borrow(const std::function<void()>& watch, const std::function<void(const Connection&)>& use) {
    const Identity now = identity();
    std::unique_ptr<Connection> connection = take(now);
    connection->watch(watch);
    use(*connection);
    connection->watch([] {});
    give_back(std::move(connection), now);
    return identity() == now;
}

// All zero when there is no file; opening it says so.
IndexConnections::Identity IndexConnections::identity() const {
    struct stat file {};
    if (stat(path_.c_str(), &file) != 0) {
        return {};
    }
    return {.device = file.st_dev,
            .inode = file.st_ino,
            .size = file.st_size,
            .seconds = file.st_mtim.tv_sec,
            .nanoseconds = file.st_mtim.tv_nsec};
}

std::unique_ptr<Connection> IndexConnections::take(const Identity& now) {
    bool is_replaced = false;
    {
        const std::scoped_lock lock(mutex_);
        if (now == known_) {
            if (!idle_.empty()) {
                std::unique_ptr<Connection> connection = std::move(idle_.back());
                idle_.pop_back();
                return connection;
            }
        } else {
            known_ = now;
            idle_.clear();
            is_replaced = true;
        }
    }
    auto connection = std::make_unique<Connection>(open_index(path_));
    if (is_replaced) {
        on_replacement_();
    }
    return connection;
}

void IndexConnections::give_back(std::unique_ptr<Connection> connection, const Identity& of) {
    const std::scoped_lock lock(mutex_);
    if (of == known_ && idle_.size() < MOST_KEPT) {
        idle_.push_back(std::move(connection));
    }
}

}  // namespace embedded::serve
