#include "host/text/json_writer.h"

#include "host/text/utf8.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <string>

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

// The beginning of a text, no longer than is good for a copy, that does not end within a code point.
std::string_view first_piece(std::string_view text) {
    constexpr std::size_t LONGEST = 4'096;
    constexpr std::size_t LONGEST_CODE_POINT = 4;
    if (text.size() <= LONGEST) {
        return text;
    }
    for (std::size_t size = LONGEST; size > LONGEST - LONGEST_CODE_POINT; --size) {
        if (!continues_code_point(text[size])) {
            return text.substr(0, size);
        }
    }
    return text.substr(0, LONGEST);  // where nothing is left of a code point that long
}

}  // namespace

void JsonValue::value(std::string_view text) {
    begin();
    out_.put('"');
    if (is_as_in_json(text)) {
        out_.put(text);
    } else {
        while (!text.empty()) {
            const std::string_view piece = first_piece(text);
            const std::string quoted = dumped(piece);
            out_.put(std::string_view(quoted).substr(1, quoted.size() - 2));
            text.remove_prefix(piece.size());
        }
    }
    out_.put('"');
}

void JsonValue::value(double number) {
    raw(dumped(number));
}

JsonValue& JsonValue::member(std::string_view key) {
    begin();
    out_.put('"');
    out_.put(key);
    out_.put("\":");
    stands_alone_ = true;
    return *this;
}

}  // namespace host
