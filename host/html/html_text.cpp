#include "host/html/html_text.h"

#include "host/text/control_characters.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace host::html {

namespace {

// The entity of a character that HTML takes for markup; empty for any other.
std::string_view entity_of(char character) {
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return {};
    }
}

// The number of the code point that these bytes are.
std::uint32_t code_point(std::string_view bytes) {
    constexpr std::array<std::uint32_t, 5> FIRST_BITS{0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t number = static_cast<unsigned char>(bytes.front()) & FIRST_BITS.at(bytes.size());
    for (const char byte : bytes.substr(1)) {
        number = (number << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    return number;
}

// "[U+202E]"
std::string named(std::uint32_t number) {
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    std::string name = "[U+";
    for (unsigned shift = 16; shift > 0;) {
        shift -= 4;
        name += DIGITS[(number >> shift) & 0xFU];
    }
    return name + "]";
}

}  // namespace

std::string html_text(std::string_view text) {
    std::string html;
    html.reserve(text.size());
    while (!text.empty()) {
        const std::size_t bytes = code_point_bytes(text);
        const std::string_view character = text.substr(0, bytes);
        const std::string_view entity = entity_of(text.front());
        if (bytes == 0) {
            html += REPLACEMENT_CHARACTER;
        } else if (!entity.empty()) {
            html += entity;
        } else if (control_character_bytes(text) > 0 && character != "\n" && character != "\t") {
            html += named(code_point(character));
        } else {
            html += character;
        }
        text.remove_prefix(std::max<std::size_t>(bytes, 1));
    }
    return html;
}

std::string path_html(std::string_view path) {
    std::string html;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size() - 1) + 1;
        html.append(html_text(path.substr(0, end))).append(end < path.size() ? "<wbr>" : "");
        path.remove_prefix(end);
    }
    return html;
}

}  // namespace host::html
