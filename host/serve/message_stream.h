// Reads and writes messages, one a line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace host::serve {

/// The most bytes of a message in either direction, without the line end.
inline constexpr std::size_t LONGEST_MESSAGE = 16'777'216;

/// Reads lines of at most `longest` bytes from a file descriptor. For one thread only.
class MessageReader {
  public:
    enum class Outcome : std::uint8_t {
        LINE,
        TOO_LONG,  ///< reported as soon as it is known; the rest of the line is skipped
        END,       ///< the end of the input, or a failure to read it
    };

    explicit MessageReader(int descriptor, std::size_t longest = LONGEST_MESSAGE)
        : descriptor_(descriptor), longest_(longest) {}

    /// Waits for the next line that is not blank, and stores it in `line` without its end. The last line may lack an
    /// end.
    Outcome next(std::string& line);

  private:
    /// Appends the available input to the buffer. Returns false at the end.
    bool read_more();

    int descriptor_;
    std::size_t longest_;
    std::string buffer_;
    std::size_t begin_ = 0;     // where the next line begins in the buffer
    std::size_t searched_ = 0;  // up to here the buffer has no end of that line
    bool is_skipping_ = false;  // the rest of a line that is too long
};

/// A destination of messages. Safe to use from several threads.
class MessageSink {
  public:
    MessageSink() = default;
    virtual ~MessageSink() = default;
    MessageSink(const MessageSink&) = delete;
    MessageSink& operator=(const MessageSink&) = delete;

    virtual void send(std::string_view message) = 0;
};

/// Writes messages to a file descriptor, one a line.
class MessageWriter : public MessageSink {
  public:
    /// Calls `on_failure` with the reason, on the thread that sends, when writing fails.
    MessageWriter(int descriptor, std::function<void(const std::string& reason)> on_failure)
        : descriptor_(descriptor), on_failure_(std::move(on_failure)) {}

    /// Returns when the message is written.
    void send(std::string_view message) override;

  private:
    int descriptor_;
    std::function<void(const std::string&)> on_failure_;
    std::mutex mutex_;
};

/// Collects the answers to the requests of a batch, and sends them as one array when it is destroyed. Sends several
/// arrays when they do not fit into one message, and none when there are no answers.
class Batch : public MessageSink {
  public:
    explicit Batch(std::shared_ptr<MessageSink> out) : out_(std::move(out)) {}
    ~Batch() override;
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    void send(std::string_view message) override;

  private:
    void send_answers();

    std::shared_ptr<MessageSink> out_;
    std::mutex mutex_;
    std::string answers_;
};

}  // namespace host::serve
