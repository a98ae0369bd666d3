// Calls side by side.
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

/// Runs as many long calls at once as there are cores, and as many others beside them: no short call waits for a long one,
/// and memory is taken for so many alone. Its functions are for one thread.
class RunningCalls {
  public:
    /// So many calls go on or wait; who starts one more waits as well.
    static constexpr std::size_t MOST = 4096;

    /// Has fewer threads where the system gives no more. Throws std::runtime_error when it does not give two.
    RunningCalls();
    /// Cancels what there is, and waits for its end.
    ~RunningCalls();
    RunningCalls(const RunningCalls&) = delete;
    RunningCalls& operator=(const RunningCalls&) = delete;

    /// `work` throws nothing but `TakesLong`; then it is run once more, among the long ones. False, and nothing is
    /// started, when a call of this id has not ended.
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
    // Calls that wait for one of the threads that take them.
    struct Lane {
        std::deque<Work> waiting;
        std::condition_variable_any arrived;
    };

    void put(Lane& lane, Work work);
    /// Waits for work; without a call once the thread is to stop.
    Work take(Lane& lane, const std::stop_token& stop);
    void run_calls(Lane& lane, const std::stop_token& stop);
    void end(const Call& call);

    std::mutex mutex_;
    std::condition_variable ended_;
    std::map<Received, std::shared_ptr<Call>> calls_;  // that have not ended
    Lane short_;                                       // and what is not known to be long
    Lane long_;
    std::vector<std::jthread> threads_;  // which stop before the rest is gone
};

}  // namespace host::serve
