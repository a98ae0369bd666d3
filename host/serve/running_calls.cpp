#include "host/serve/running_calls.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace host::serve {

RunningCalls::RunningCalls() {
    const unsigned cores = std::max(std::thread::hardware_concurrency(), 1U);
    const std::size_t wanted = std::size_t{2} * cores;
    threads_.reserve(wanted);
    try {
        while (threads_.size() < wanted) {
            Lane& lane = threads_.size() % 2 == 0 ? short_ : long_;
            threads_.emplace_back([this, &lane](const std::stop_token& stop) { run_calls(lane, stop); });
        }
    } catch (const std::system_error& error) {
        if (threads_.size() < 2) {  // a lane without a thread would wait forever
            throw std::runtime_error("cannot start a thread (" + error.code().message() +
                                     "); end other programs, or allow more of them with ulimit -u");
        }
    }
}

RunningCalls::~RunningCalls() {
    const std::scoped_lock lock(mutex_);
    for (const auto& [id, call] : calls_) {
        call->cancel();
    }
}

bool RunningCalls::start(const std::shared_ptr<Call>& call, std::function<void(Call&)> work) {
    {
        std::unique_lock lock(mutex_);
        ended_.wait(lock, [this] { return calls_.size() < MOST; });
        if (!calls_.emplace(call->id(), call).second) {
            return false;
        }
    }
    put(short_, {call, std::move(work)});
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

void RunningCalls::put(Lane& lane, Work work) {
    const std::scoped_lock lock(mutex_);
    lane.waiting.push_back(std::move(work));
    lane.arrived.notify_one();
}

RunningCalls::Work RunningCalls::take(Lane& lane, const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    if (!lane.arrived.wait(lock, stop, [&lane] { return !lane.waiting.empty(); })) {
        return {};
    }
    Work work = std::move(lane.waiting.front());
    lane.waiting.pop_front();
    return work;
}

void RunningCalls::run_calls(Lane& lane, const std::stop_token& stop) {
    while (true) {
        Work work = take(lane, stop);
        if (work.call == nullptr) {
            return;
        }
        try {
            work.run(*work.call);
            end(*work.call);
        } catch (const TakesLong&) {
            work.call->join_long_ones();
            put(long_, std::move(work));
        }
    }
}

void RunningCalls::end(const Call& call) {
    const std::scoped_lock lock(mutex_);
    calls_.erase(call.id());
    ended_.notify_all();
}

}  // namespace host::serve
