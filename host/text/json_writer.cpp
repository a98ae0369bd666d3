#include "host/text/json_writer.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>

namespace host {

namespace {

constexpr std::size_t BYTES = 256;

// For each byte whether it stands for itself in JSON.
constexpr std::array<bool, BYTES> AS_IN_JSON = [] {
    std::array<bool, BYTES> as_in_json{};
    for (std::size_t byte = ' '; byte <= '~'; ++byte) {
        as_in_json[byte] = byte != '"' && byte != '\\';
    }
    return as_in_json;
}();

// Looks at all characters, as nearly all texts are of this kind: that is faster than to stop at the first that is not.
bool is_as_in_json(std::string_view text) {
    bool is_as_in_json = true;
    for (const char character : text) {
        is_as_in_json &= AS_IN_JSON[static_cast<unsigned char>(character)];
    }
    return is_as_in_json;
}

// The JSON of a value that takes thought: texts with escapes or bytes that may be no UTF-8, and numbers that may be
// none, which become null.
std::string dumped(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

void JsonValue::value(std::string_view text) {
    if (is_as_in_json(text)) {
        begin();
        text_ += '"';
        text_ += text;
        text_ += '"';
    } else {
        raw(dumped(text));
    }
}

void JsonValue::value(double number) {
    raw(dumped(number));
}

JsonValue& JsonValue::member(std::string_view key) {
    begin();
    text_ += '"';
    text_ += key;
    text_ += "\":";
    stands_alone_ = true;
    return *this;
}

void JsonWriter::next() {
    constexpr std::size_t ENOUGH = 65'536;
    if (buffer_.size() > ENOUGH) {
        flush();
    }
    if (!is_first_) {
        buffer_ += ',';
    }
    buffer_ += '\n';
    is_first_ = false;
}

void JsonWriter::name(std::string_view key) {
    next();
    next_value().value(key);
    buffer_ += ": ";
}

void JsonWriter::flush() {
    out_ << buffer_;
    buffer_.clear();
}

}  // namespace host
