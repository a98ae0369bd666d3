// Calls side by side.
#pragma once

#include "embedded/serve/call.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace embedded::serve {

/// Runs each call on a thread of its own; a thread whose call has ended takes the next one. Its functions are for one
/// thread.
class RunningCalls {
  public:
    /// So many calls run at once; others wait for one of them to end.
    static constexpr std::size_t MOST_AT_ONCE = 256;
    /// So many wait; who starts one more waits as well.
    static constexpr std::size_t MOST_WAITING = 65'536;

    RunningCalls() = default;
    /// Cancels what runs, and waits for its end.
    ~RunningCalls();
    RunningCalls(const RunningCalls&) = delete;
    RunningCalls& operator=(const RunningCalls&) = delete;

    /// `work` throws nothing. False, and nothing is started, when a call of this id has not ended.
    bool start(const std::shared_ptr<Call>& call, std::function<void(Call&)> work);

    /// Cancels the call of this id if there is one that has not ended.
    void cancel(const Received& id);

    /// Waits until no call is left, as long as one ends every now and then: false once none has for `patience`.
    bool finish(std::chrono::milliseconds patience);

  private:
    struct Work {
        std::shared_ptr<Call> call;
        std::function<void(Call&)> run;
    };
    void run_calls();

    std::mutex mutex_;
    std::condition_variable started_;
    std::condition_variable ended_;
    std::map<Received, std::shared_ptr<Call>> calls_;  // that have not ended
    std::deque<Work> waiting_;
    std::size_t idle_ = 0;
    bool is_over_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace embedded::serve
