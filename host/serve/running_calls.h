// Runs calls concurrently.
#pragma once

#include "host/serve/call.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace host::serve {

/// Runs calls on two groups of threads, one for long calls and one for short calls, with as many threads each as there
/// are cores. So no short call waits for a long one, and memory is bounded. Its functions are for one thread only.
class RunningCalls {
  public:
    /// The most calls that run or wait. `start` waits while there are so many.
    static constexpr std::size_t MOST = 4096;

    /// Starts fewer threads when the system refuses more. Throws `std::runtime_error` when it allows less than two.
    RunningCalls();
    /// Cancels all calls and waits for their ends.
    ~RunningCalls();
    RunningCalls(const RunningCalls&) = delete;
    RunningCalls& operator=(const RunningCalls&) = delete;

    /// Starts a call among the short ones. `work` may throw `TakesLong` only; it is then run again, among the long
    /// calls. Returns false, and starts nothing, when a call with the same id is still running.
    bool start(const std::shared_ptr<Call>& call, std::function<void(Call&)> work);

    /// Cancels the call with this id if it is still running.
    void cancel(const Received& id);

    /// Waits until all calls have ended. Returns false when no call ends within `patience`.
    bool finish(std::chrono::milliseconds patience);

  private:
    struct Work {
        std::shared_ptr<Call> call;
        std::function<void(Call&)> run;
    };
    // The calls that wait for one group of threads.
    struct Lane {
        std::deque<Work> waiting;
        std::condition_variable_any arrived;
    };

    void put(Lane& lane, Work work);
    /// Waits for work. Returns work without a call when the thread has to stop.
    Work take(Lane& lane, const std::stop_token& stop);
    void run_calls(Lane& lane, const std::stop_token& stop);
    void end(const Call& call);

    std::mutex mutex_;
    std::condition_variable ended_;
    std::map<Received, std::shared_ptr<Call>> calls_;  // those that are still running, by id
    Lane short_;                                       // also for calls that are not known to be long
    Lane long_;
    std::vector<std::jthread> threads_;  // declared last, so they stop before the other members are destroyed
};

}  // namespace host::serve
