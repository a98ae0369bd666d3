// JSON-RPC 2.0: reads messages and writes answers.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace host::serve {

/// JSON from clients. Looking up a key is fast, however many keys they send.
using Received = nlohmann::json;
/// JSON to clients. Keys keep their order.
using Sent = nlohmann::ordered_json;

enum class ErrorCode : std::int16_t {
    PARSE_ERROR = -32700,
    INVALID_REQUEST = -32600,
    METHOD_NOT_FOUND = -32601,
    INVALID_PARAMS = -32602,
    INTERNAL_ERROR = -32603,
    RESOURCE_NOT_FOUND = -32002,  // defined by the Model Context Protocol
};

/// The most bytes of an error's reason, which may quote what a client sent.
inline constexpr std::size_t LONGEST_REASON = 16'384;

/// An error that answers a request. `what()` is one line for the author of the client.
class RpcError : public std::runtime_error {
  public:
    RpcError(ErrorCode code, const std::string& message, Sent data = nullptr)
        : runtime_error(message), code_(code), data_(std::move(data)) {}

    [[nodiscard]] ErrorCode code() const { return code_; }
    /// Details for programs; null for none.
    [[nodiscard]] const Sent& data() const { return data_; }

  private:
    ErrorCode code_;
    Sent data_;
};

/// Returns the error for a bad parameter. `field` is a name such as "paths[2]" or "_meta.progressToken".
RpcError bad_parameter(const std::string& field, const std::string& problem);

/// Returns a member of the parameters that must be a string. Throws `RpcError` that names it.
const std::string& text_parameter(const Received& params, const std::string& key);
/// Returns a member of the parameters that must be an object, or an empty object when it is missing. Throws `RpcError`
/// that names it.
Received object_parameter(const Received& params, const std::string& key);

struct Message {
    enum class Kind : std::uint8_t { REQUEST, NOTIFICATION, RESPONSE };

    Kind kind = Kind::NOTIFICATION;
    Received id;  ///< a number, or a string of at most 256 bytes; null unless a request
    std::string method;
    Received params = Received::object();
};

/// Parses one line of JSON. Throws `RpcError` when it is not JSON, is nested deeper than 64 levels, or holds more than
/// 100,000 values.
Received parse(std::string_view line);

/// Reads one message. Throws `RpcError` when the value is not a message.
Message read_message(const Received& value);

/// Returns the id for the answer to an invalid message: its own if that is valid, else null.
Received id_of(const Received& value);

/// Each returns a message as one line, without its end. Bytes that are not UTF-8 become U+FFFD. `result` is JSON. The
/// reason of an error is cut to `LONGEST_REASON` bytes.
std::string answer(const Received& id, std::string_view result);
std::string answer(const Received& id, const RpcError& error);
std::string notification(std::string_view method, const Sent& params);

/// Returns JSON on one line. Bytes that are not UTF-8 become U+FFFD.
std::string text_of(const Sent& value);

}  // namespace host::serve
