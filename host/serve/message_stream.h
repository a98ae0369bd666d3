// Messages as lines: how they come in, and how they go out.
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

/// How many bytes a message has at most, in either direction, without its end.
inline constexpr std::size_t LONGEST_MESSAGE = 16'777'216;

/// Reads lines from a file descriptor, each of at most `longest` bytes. For one thread.
class MessageReader {
  public:
    enum class Outcome : std::uint8_t {
        LINE,
        TOO_LONG,  ///< said as soon as it is known; the rest of that line is passed over
        END,       ///< of the input, or of its being readable
    };

    explicit MessageReader(int descriptor, std::size_t longest = LONGEST_MESSAGE)
        : descriptor_(descriptor), longest_(longest) {}

    /// Waits for the next line that is not blank. It has no end of its own; that of the input ends the last one.
    Outcome next(std::string& line);

  private:
    /// Takes in what there is; false at the end.
    bool read_more();

    int descriptor_;
    std::size_t longest_;
    std::string buffer_;
    std::size_t begin_ = 0;     // of the next line in the buffer
    std::size_t searched_ = 0;  // up to where the buffer holds no end of that line
    bool is_passing_over_ = false;
};

/// Where messages go. For any number of threads.
class MessageSink {
  public:
    MessageSink() = default;
    virtual ~MessageSink() = default;
    MessageSink(const MessageSink&) = delete;
    MessageSink& operator=(const MessageSink&) = delete;

    virtual void send(std::string_view message) = 0;
};

/// Writes messages to a file descriptor, a line each.
class MessageWriter : public MessageSink {
  public:
    /// `on_failure` is called, on the thread that sends, when the descriptor takes no more; it says why.
    MessageWriter(int descriptor, std::function<void(const std::string& reason)> on_failure)
        : descriptor_(descriptor), on_failure_(std::move(on_failure)) {}

    /// Waits until the message is written.
    void send(std::string_view message) override;

  private:
    int descriptor_;
    std::function<void(const std::string&)> on_failure_;
    std::mutex mutex_;
};

/// Collects the answers to the requests of a batch, and sends them as one array at its end, if there are any; as more than
/// one where they do not fit into a message.
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
