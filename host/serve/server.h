// The Model Context Protocol: pages and look-ups for programs that write, one message a line.
//
// A client says `initialize`, then asks for tools, resources and prompts. What only tells what there is is answered at
// once; what reads the index is a call on another thread, so that answers come in the order in which they are ready.
#pragma once

#include "host/serve/index_connections.h"
#include "host/serve/message_stream.h"
#include "host/serve/running_calls.h"
#include "host/serve/tools.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace host::serve {

struct ServerOptions {
    std::shared_ptr<const Index> index;
    std::string checkout;  ///< empty for what `source_folder` finds
    std::string version;   ///< of this program
    /// What is said of a failure to read the index, in one line; it is called by any thread.
    std::function<std::string(const std::exception&)> describe;
};

/// One session with one client.
class Server {
  public:
    /// Opens the index. Throws what `Index::connect` throws.
    Server(ServerOptions options, std::shared_ptr<MessageSink> out);

    /// Answers what comes in until the input ends; what was asked before is still answered then, as long as the next
    /// answer is ready within a second. False when calls go on that nobody waits for any more: this object's
    /// destructor would wait for them.
    bool run(MessageReader& in);

    /// Takes one line. Throws nothing that has to do with what it says.
    void take(std::string_view line);

  private:
    enum class Level : std::uint8_t { DEBUG, INFO, NOTICE, WARNING, ERROR, CRITICAL, ALERT, EMERGENCY };

    void take_message(const Received& value, const std::shared_ptr<MessageSink>& answers);
    void notice(const Message& message);
    void request(const Message& message, const std::shared_ptr<MessageSink>& answers);

    /// The result of a request that only tells what there is; the empty text for others.
    std::string told(const Message& message);
    std::string initialize(const Received& params);
    std::string set_level(const Received& params);

    /// What a call does, which gives its result.
    using Work = std::function<std::string(Call&)>;
    /// None for methods that nobody knows.
    Work work_of(const Message& message);
    Work tool_call(const Received& params);
    /// Sends what the work gives, or why it fails. Throws `TakesLong` alone.
    void answer_with(const Work& work, Call& call);

    void log(Level level, const std::string& text);

    const ServerOptions options_;
    const std::shared_ptr<MessageSink> out_;
    std::atomic<Level> level_ = Level::WARNING;
    bool is_initialized_ = false;
    IndexConnections index_;
    const Workplace workplace_;
    RunningCalls calls_;
};

}  // namespace host::serve
