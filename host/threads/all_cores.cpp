#include "host/threads/all_cores.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace host {

namespace {

class Crew {
  public:
    Crew(std::size_t count, const std::function<void(std::size_t)>& work) : count_(count), work_(work) {
        const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
        const std::size_t wanted = std::min(cores, count);
        threads_.reserve(wanted);
        try {
            while (threads_.size() < wanted) {
                threads_.emplace_back([this] { run(); });
            }
        } catch (const std::system_error&) {  // the system gives no more; fewer do, or none
        }
    }
    ~Crew() {
        next_ = count_;
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    void wait(const std::function<void(std::size_t)>& on_done) {
        constexpr std::chrono::milliseconds PERIOD(20);
        if (threads_.empty()) {
            run();
        }
        std::size_t reported = 0;
        std::unique_lock lock(mutex_);
        while (reported < count_) {
            ended_.wait_for(lock, PERIOD, [&] { return done_ == count_ || failure_ != nullptr; });
            if (failure_ != nullptr) {
                std::rethrow_exception(failure_);
            }
            const std::size_t done = done_;
            lock.unlock();
            on_done(done - reported);
            reported = done;
            lock.lock();
        }
    }

  private:
    void run() {
        for (std::size_t at = next_++; at < count_; at = next_++) {
            std::exception_ptr failure;
            try {
                work_(at);
            } catch (...) {
                failure = std::current_exception();
                next_ = count_;
            }
            const std::lock_guard lock(mutex_);
            failure_ = failure_ == nullptr ? failure : failure_;
            if (++done_ == count_ || failure != nullptr) {
                ended_.notify_all();
            }
        }
    }

    const std::size_t count_;
    const std::function<void(std::size_t)>& work_;
    std::atomic<std::size_t> next_ = 0;
    std::mutex mutex_;
    std::condition_variable ended_;
    std::size_t done_ = 0;
    std::exception_ptr failure_;
    std::vector<std::thread> threads_;
};

}  // namespace

void on_all_cores(std::size_t count, const std::function<void(std::size_t)>& work,
                  const std::function<void(std::size_t)>& on_done) {
    Crew(count, work).wait(on_done);
}

}  // namespace host
