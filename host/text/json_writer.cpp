#include "host/text/json_writer.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <string>

namespace host {

namespace {

bool is_printable(char character) {
    return character >= ' ' && character <= '~';
}

// Whether each character stands for itself in JSON.
bool is_as_in_json(std::string_view text) {
    return std::ranges::all_of(
        text, [](char character) { return is_printable(character) && character != '"' && character != '\\'; });
}

// Whether a text is what both libraries write alike. The streaming writer passes on whatever bytes a text has; those
// beyond ASCII may be no UTF-8, which the other library replaces.
bool is_ascii(std::string_view text) {
    return std::ranges::all_of(text, [](char character) {
        return is_printable(character) || character == '\n' || character == '\t' || character == '\r';
    });
}

std::string dumped(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

void JsonValue::value(std::string_view text) {
    if (is_as_in_json(text)) {
        writer_.copy(text);
    } else if (is_ascii(text)) {
        writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    } else {
        const std::string json = dumped(text);
        writer_.RawValue(json.data(), json.size(), rapidjson::kStringType);
    }
}

// What is no finite number becomes null, which the streaming writer does not do.
void JsonValue::value(double number) {
    const std::string json = dumped(number);
    writer_.RawValue(json.data(), json.size(), rapidjson::kNumberType);
}

void JsonValue::raw(std::string_view json) {
    writer_.RawValue(json.data(), json.size(), rapidjson::kObjectType);
}

void JsonWriter::next() {
    constexpr std::size_t ENOUGH = 65'536;
    if (buffer_.GetSize() > ENOUGH) {
        flush();
    }
    if (!is_first_) {
        buffer_.Put(',');
    }
    buffer_.Put('\n');
    is_first_ = false;
}

void JsonWriter::name(std::string_view key) {
    next();
    next_value().value(key);
    buffer_.Put(':');
    buffer_.Put(' ');
}

void JsonWriter::flush() {
    out_.write(buffer_.GetString(), static_cast<std::streamsize>(buffer_.GetSize()));
    buffer_.Clear();
}

}  // namespace host
