#include "embedded/serve/running_calls.h"

#include <system_error>
#include <utility>

namespace embedded::serve {

RunningCalls::~RunningCalls() {
    {
        const std::scoped_lock lock(mutex_);
        for (const auto& [id, call] : calls_) {
            call->cancel();
        }
        is_over_ = true;
    }
    started_.notify_all();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

bool RunningCalls::start(const std::shared_ptr<Call>& call, std::function<void(Call&)> work) {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [this] { return waiting_.size() < MOST_WAITING; });
    if (!calls_.emplace(call->id(), call).second) {
        return false;
    }
    waiting_.push_back({call, std::move(work)});
    if (waiting_.size() > idle_ && threads_.size() < MOST_AT_ONCE) {
        try {
            threads_.emplace_back([this] { run_calls(); });
        } catch (const std::system_error&) {  // the machine gives no more: the ones that there are will do
            if (threads_.empty()) {
                throw;
            }
        }
    }
    lock.unlock();
    started_.notify_one();
    return true;
}

void RunningCalls::cancel(const Received& id) {
    const std::scoped_lock lock(mutex_);
    if (const auto found = calls_.find(id); found != calls_.end()) {
        found->second->cancel();
    }
}

bool RunningCalls::finish(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    while (!calls_.empty()) {
        if (ended_.wait_for(lock, patience) == std::cv_status::timeout) {
            return calls_.empty();
        }
    }
    return true;
}

void RunningCalls::run_calls() {
    std::unique_lock lock(mutex_);
    while (true) {
        ++idle_;
        started_.wait(lock, [this] { return is_over_ || !waiting_.empty(); });
        --idle_;
        if (waiting_.empty()) {
            return;
        }
        Work work = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        work.run(*work.call);
        lock.lock();
        calls_.erase(work.call->id());
        work = {};  // with its part of a batch
        ended_.notify_all();
    }
}

}  // namespace embedded::serve
