// JSON-RPC 2.0: what a message says, and how it is answered.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace host::serve {

/// What clients send; looking a key up takes no longer the more keys they send.
using Received = nlohmann::json;
/// What is sent to them; keys keep their order.
using Sent = nlohmann::ordered_json;

enum class ErrorCode : std::int16_t {
    PARSE_ERROR = -32700,
    INVALID_REQUEST = -32600,
    METHOD_NOT_FOUND = -32601,
    INVALID_PARAMS = -32602,
    INTERNAL_ERROR = -32603,
    RESOURCE_NOT_FOUND = -32002,  // of the Model Context Protocol
};

/// How many bytes are said of what is wrong, however much a client has sent.
inline constexpr std::size_t LONGEST_REASON = 16'384;

/// Why a request is answered with an error. `what()` is one line for whoever wrote the client.
class RpcError : public std::runtime_error {
  public:
    RpcError(ErrorCode code, const std::string& message, Sent data = nullptr)
        : runtime_error(message), code_(code), data_(std::move(data)) {}

    [[nodiscard]] ErrorCode code() const { return code_; }
    /// What a program can make of it; null for nothing.
    [[nodiscard]] const Sent& data() const { return data_; }

  private:
    ErrorCode code_;
    Sent data_;
};

/// What a parameter is refused with; the field is named as "paths[2]" or "_meta.progressToken".
RpcError bad_parameter(const std::string& field, const std::string& problem);

/// A member of the parameters, which must be a text, or an object that may be missing. Throws `RpcError` that names it.
const std::string& text_parameter(const Received& params, const std::string& key);
Received object_parameter(const Received& params, const std::string& key);

struct Message {
    enum class Kind : std::uint8_t { REQUEST, NOTIFICATION, RESPONSE };

    Kind kind = Kind::NOTIFICATION;
    Received id;  ///< a number, or a text of at most 256 bytes; null where it is no request
    std::string method;
    Received params = Received::object();
};

/// Reads the JSON of one line. Throws `RpcError` when it is none, and when it is nested deeper, or holds more values,
/// than any message that is meant.
Received parse(std::string_view line);

/// What a value says, which is one message. Throws `RpcError` when it is none.
Message read_message(const Received& value);

/// The id that an error in this value is answered with: its own when that is one, else null.
Received id_of(const Received& value);

/// Messages as one line each, without its end. Bytes that are not UTF-8 become U+FFFD. `result` is JSON; of an error as
/// much is said as fits into a few lines, though it names what a client has sent.
std::string answer(const Received& id, std::string_view result);
std::string answer(const Received& id, const RpcError& error);
std::string notification(std::string_view method, const Sent& params);

/// JSON on one line. Bytes that are not UTF-8 become U+FFFD.
std::string text_of(const Sent& value);

}  // namespace host::serve
