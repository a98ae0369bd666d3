#include "host/text/json_writer.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>

namespace host {

namespace {

// Whether each character stands for itself in JSON.
bool is_as_in_json(std::string_view text) {
    return std::ranges::all_of(text, [](char character) {
        return character >= ' ' && character <= '~' && character != '"' && character != '\\';
    });
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
        text_.append("\"").append(text).append("\"");
    } else {
        raw(dumped(text));
    }
}

void JsonValue::value(double number) {
    raw(dumped(number));
}

JsonValue& JsonValue::member(std::string_view key) {
    begin();
    text_.append("\"").append(key).append("\":");
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
