// One request that takes its time.
#pragma once

#include "host/serve/json_rpc.h"
#include "host/serve/message_stream.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace host::serve {

/// Out of a call that its client has cancelled.
struct Cancelled {};

/// Out of a call that turns out to be long while it is not among those that are.
struct TakesLong {};

/// What the thread that a call runs on and the one that reads messages share.
class Call {
  public:
    /// `progress_token` is null when the client does not want to hear of progress, which goes to `notifications`.
    Call(Received id, Received progress_token, std::shared_ptr<MessageSink> answers,
         std::shared_ptr<MessageSink> notifications)
        : id_(std::move(id)), progress_token_(std::move(progress_token)), answers_(std::move(answers)),
          notifications_(std::move(notifications)) {}

    [[nodiscard]] const Received& id() const { return id_; }

    void cancel() { is_cancelled_ = true; }

    /// Throws `Cancelled` once the client has cancelled the call.
    void check() const {
        if (is_cancelled_) {
            throw Cancelled{};
        }
    }

    /// Throws `TakesLong` unless the call is among the long ones already.
    void take_long() const {
        if (!is_long_) {
            throw TakesLong{};
        }
    }
    void join_long_ones() { is_long_ = true; }

    /// Says that `done` of `total` steps are done, and checks.
    void report(std::int64_t done, std::int64_t total, const std::string& what) const {
        check();
        if (!progress_token_.is_null()) {
            notifications_->send(notification(
                "notifications/progress",
                {{"progressToken", progress_token_}, {"progress", done}, {"total", total}, {"message", what}}));
        }
    }

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
