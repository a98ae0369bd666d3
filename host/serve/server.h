// A server for the Model Context Protocol: pages and look-ups for programs that write, one message a line.
//
// A client sends `initialize`, then asks for tools, resources and prompts. Requests that do not read the index are
// answered at once. Requests that do are calls on other threads, so their answers may come in another order.
#pragma once

#include "host/pages/wiki.h"
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
    std::string checkout;  ///< empty for the result of `source_folder`
    std::string version;   ///< of this program
    /// Returns one line about a failure to read the index. Called on any thread.
    std::function<std::string(const std::exception&)> describe;
    pages::Wiki wiki = {};  ///< whose pages are resources; without pages for none
};

/// One session with one client.
class Server {
  public:
    /// Opens the index. Throws what `Index::connect` throws.
    Server(ServerOptions options, std::shared_ptr<MessageSink> out);

    /// Answers messages until the input ends, then waits for running calls as long as one ends within each second.
    /// Returns false when calls are still running; the destructor would wait for these.
    bool run(MessageReader& in);

    /// Handles one line. Invalid messages are answered with an error and throw nothing.
    void take(std::string_view line);

  private:
    enum class Level : std::uint8_t { DEBUG, INFO, NOTICE, WARNING, ERROR, CRITICAL, ALERT, EMERGENCY };

    void take_message(const Received& value, const std::shared_ptr<MessageSink>& answers);
    void notice(const Message& message);
    void request(const Message& message, const std::shared_ptr<MessageSink>& answers);

    /// Returns the result of a request that is answered at once; the empty string for any other request.
    std::string immediate_result(const Message& message);
    std::string initialize(const Received& params);
    std::string set_level(const Received& params);

    /// The work of a call. Returns its result.
    using Work = std::function<std::string(Call&)>;
    /// Returns the work of a request; none for an unknown method.
    Work work_of(const Message& message);
    Work tool_call(const Received& params);
    /// Runs the work and sends its result or its error. Throws `TakesLong` only.
    void answer_with(const Work& work, Call& call);

    void log(Level level, const std::string& text);

    const ServerOptions options_;
    const std::shared_ptr<MessageSink> out_;
    std::atomic<Level> level_ = Level::WARNING;
    bool is_initialized_ = false;
    IndexConnections index_;
    const ToolContext context_;
    RunningCalls calls_;
};

}  // namespace host::serve
