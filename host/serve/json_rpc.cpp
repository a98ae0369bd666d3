#include "host/serve/json_rpc.h"

#include <cstddef>

namespace host::serve {

namespace {

constexpr int DEEPEST = 64;
constexpr std::size_t MOST_VALUES = 100'000;
constexpr std::size_t LONGEST_ID = 256;  // bytes

bool is_id(const Received& value) {
    return value.is_number() || (value.is_string() && value.get_ref<const std::string&>().size() <= LONGEST_ID);
}

RpcError invalid(const std::string& problem) {
    return {ErrorCode::INVALID_REQUEST, problem};
}

}  // namespace

RpcError bad_parameter(const std::string& field, const std::string& problem) {
    return {ErrorCode::INVALID_PARAMS, field + ": " + problem, {{"field", field}}};
}

const std::string& text_parameter(const Received& params, const std::string& key) {
    const auto value = params.find(key);
    if (value == params.end()) {
        throw bad_parameter(key, "is missing");
    }
    if (!value->is_string()) {
        throw bad_parameter(key, "must be a string");
    }
    return value->get_ref<const std::string&>();
}

Received object_parameter(const Received& params, const std::string& key) {
    Received value = params.value(key, Received::object());
    if (!value.is_object()) {
        throw bad_parameter(key, "must be an object");
    }
    return value;
}

Received parse(std::string_view line) {
    std::size_t values = 0;
    const auto check = [&values](int depth, Received::parse_event_t event, const Received&) {
        using Event = Received::parse_event_t;
        if (depth > DEEPEST) {
            throw invalid("a message may be nested at most " + std::to_string(DEEPEST) + " levels deep");
        }
        values += event == Event::value || event == Event::object_start || event == Event::array_start ? 1 : 0;
        if (values > MOST_VALUES) {
            throw invalid("a message may hold at most " + std::to_string(MOST_VALUES) + " values");
        }
        return true;
    };
    try {
        return Received::parse(line, check);
    } catch (const Received::exception&) {
        throw RpcError(ErrorCode::PARSE_ERROR, "not JSON; a message is one line of JSON in UTF-8");
    }
}

Message read_message(const Received& value) {
    if (!value.is_object()) {
        throw invalid("a message must be an object");
    }
    if (const auto version = value.find("jsonrpc"); version == value.end() || *version != "2.0") {
        throw invalid("jsonrpc: must be \"2.0\"");
    }
    const auto id = value.find("id");
    const auto method = value.find("method");
    if (method == value.end()) {
        if (value.contains("result") || value.contains("error")) {
            return {.kind = Message::Kind::RESPONSE, .id = {}, .method = {}};
        }
        throw invalid("method: is missing");
    }
    if (!method->is_string()) {
        throw invalid("method: must be a string");
    }
    Message message{.kind = Message::Kind::NOTIFICATION, .id = {}, .method = *method};
    if (id != value.end()) {
        if (!is_id(*id)) {
            throw invalid("id: must be a number or a string of at most " + std::to_string(LONGEST_ID) + " bytes");
        }
        message.kind = Message::Kind::REQUEST;
        message.id = *id;
    }
    if (const auto params = value.find("params"); params != value.end()) {
        if (!params->is_object()) {
            throw RpcError(ErrorCode::INVALID_PARAMS, "params: must be an object");
        }
        message.params = *params;
    }
    return message;
}

Received id_of(const Received& value) {
    const auto id = value.is_object() ? value.find("id") : value.end();
    return id != value.end() && is_id(*id) ? *id : Received();
}

std::string answer(const Received& id, std::string_view result) {
    return (R"({"jsonrpc":"2.0","id":)" + id.dump() + R"(,"result":)").append(result).append("}");
}

std::string answer(const Received& id, const RpcError& error) {
    Sent details = {{"code", error.code()}, {"message", std::string(error.what()).substr(0, LONGEST_REASON)}};
    if (!error.data().is_null() && text_of(error.data()).size() <= LONGEST_REASON) {
        details["data"] = error.data();
    }
    return R"({"jsonrpc":"2.0","id":)" + id.dump() + R"(,"error":)" + text_of(details) + "}";
}

std::string notification(std::string_view method, const Sent& params) {
    return text_of({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}});
}

std::string text_of(const Sent& value) {
    return value.dump(-1, ' ', false, Sent::error_handler_t::replace);
}

}  // namespace host::serve
