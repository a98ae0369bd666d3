// A request that runs on another thread, with cancellation and progress.
#pragma once

#include "host/serve/json_rpc.h"
#include "host/serve/message_stream.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace host::serve {

/// Thrown in a call that its client has cancelled.
struct Cancelled {};

/// Thrown in a call that turns out to be long while it runs among the short ones.
struct TakesLong {};

/// A call, shared by the thread that runs it and the thread that reads messages.
class Call {
  public:
    /// `progress_token` is null when the client does not ask for progress. The result goes to `answers`, progress to
    /// `notifications`.
    Call(Received id, Received progress_token, std::shared_ptr<MessageSink> answers,
         std::shared_ptr<MessageSink> notifications)
        : id_(std::move(id)), progress_token_(std::move(progress_token)), answers_(std::move(answers)),
          notifications_(std::move(notifications)) {}

    [[nodiscard]] const Received& id() const { return id_; }

    /// Makes every later interrupt check of the call throw `Cancelled`. Safe to call from any thread.
    void cancel() { is_cancelled_ = true; }

    /// The interrupt check of the call: throws `Cancelled` once the client has cancelled it.
    void check() const {
        if (is_cancelled_) {
            throw Cancelled{};
        }
    }

    /// Declares that the call will take long. Throws `TakesLong` unless it already runs among the long calls.
    void take_long() const {
        if (!is_long_) {
            throw TakesLong{};
        }
    }
    /// Notes that the call runs among the long calls from now on.
    void join_long_ones() { is_long_ = true; }

    /// Reports progress: `done` of `total` steps are done. Throws `Cancelled` as `check` does.
    void report(std::int64_t done, std::int64_t total, const std::string& what) const {
        check();
        if (!progress_token_.is_null()) {
            notifications_->send(notification(
                "notifications/progress",
                {{"progressToken", progress_token_}, {"progress", done}, {"total", total}, {"message", what}}));
        }
    }

    /// Sends the answer to the call.
    void send(std::string_view message) const { answers_->send(message); }

  private:
    const Received id_;
    const Received progress_token_;
    const std::shared_ptr<MessageSink> answers_;
    const std::shared_ptr<MessageSink> notifications_;
    std::atomic<bool> is_cancelled_ = false;
    bool is_long_ = false;
};

}  // namespace host::serve
