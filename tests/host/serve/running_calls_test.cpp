// Concurrent calls, without a server.

#include "host/serve/running_calls.h"
#include "tests/host/without_threads.h"

#include <gtest/gtest.h>

#include <future>

namespace host::serve {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds LONG(60'000);

std::shared_ptr<Call> call(int id) {
    return std::make_shared<Call>(id, nullptr, nullptr, nullptr);
}

TEST(RunningCalls, ReportWhetherAllHaveEnded) {
    RunningCalls calls;
    std::promise<void> may_end;
    ASSERT_TRUE(calls.start(call(1), [&](Call&) { may_end.get_future().wait(); }));
    EXPECT_FALSE(calls.finish(milliseconds(1)));
    may_end.set_value();
    EXPECT_TRUE(calls.finish(LONG));
}

TEST(RunningCalls, RunALongCallAgainAmongTheLongOnes) {
    RunningCalls calls;
    std::atomic<int> runs = 0;
    calls.start(call(1), [&](const Call& running) {
        if (++runs < 3) {
            running.take_long();
        }
    });
    EXPECT_TRUE(calls.finish(LONG));
    EXPECT_EQ(runs, 2);
}

TEST(RunningCalls, ExplainWhatToDoWhenNoThreadCanBeStarted) {
    const auto run_one = [] {
        RunningCalls calls;
        calls.start(call(1), [](Call&) {});
        return std::string(calls.finish(LONG) ? "ended" : "goes on");
    };
    const std::string said = "cannot start a thread (Resource temporarily unavailable); end other programs, or "
                             "allow more of them with ulimit -u";
    EXPECT_EQ(with_most_threads(0, run_one), said);
    EXPECT_EQ(with_most_threads(2, run_one), said);  // too few: one lane has no thread
    if (geteuid() == 0) {
        EXPECT_EQ(with_most_threads(3 + SANITIZER_THREADS, run_one), "ended");
    }
}

}  // namespace
}  // namespace host::serve
