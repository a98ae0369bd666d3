#include "host/text/utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace host {

namespace {

// Removes ASCII characters from the beginning, as many as are quickly told.
void skip_ascii(std::string_view& text) {
    constexpr std::uint64_t HIGH_BITS = 0x8080'8080'8080'8080;
    std::uint64_t bytes = 0;
    for (; text.size() >= sizeof(bytes); text.remove_prefix(sizeof(bytes))) {
        std::memcpy(&bytes, text.data(), sizeof(bytes));
        if ((bytes & HIGH_BITS) != 0) {
            return;
        }
    }
}

}  // namespace

std::size_t code_point_bytes(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t bytes = lead < 0x80   ? 1
                              : lead < 0xC2 ? 0
                              : lead < 0xE0 ? 2
                              : lead < 0xF0 ? 3
                              : lead < 0xF5 ? 4
                                            : 0;
    if (bytes < 2) {
        return bytes;
    }
    const std::string_view continuation = text.substr(1, bytes - 1);
    const bool is_whole = continuation.size() == bytes - 1 && std::ranges::all_of(continuation, continues_code_point);
    return is_whole ? bytes : 0;
}

bool is_utf8(std::string_view text) {
    for (skip_ascii(text); !text.empty(); skip_ascii(text)) {
        const std::size_t bytes = code_point_bytes(text);
        if (bytes == 0) {
            return false;
        }
        text.remove_prefix(bytes);
    }
    return true;
}

std::size_t utf16_units(std::string_view text) {
    std::size_t units = 0;
    for (const char character : text) {
        units += (continues_code_point(character) ? 0 : 1) + (static_cast<unsigned char>(character) >= 0xF0 ? 1 : 0);
    }
    return units;
}

std::string_view from_column(std::string_view text, std::size_t column) {
    constexpr std::size_t BEYOND_ONE_UNIT = 4;  // bytes
    for (std::size_t units = 0; units < column && !text.empty();) {
        const std::size_t bytes = code_point_bytes(text);
        units += bytes == BEYOND_ONE_UNIT ? 2 : 1;
        text.remove_prefix(std::max<std::size_t>(bytes, 1));
    }
    return text;
}

}  // namespace host
