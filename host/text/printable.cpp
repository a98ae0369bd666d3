#include "host/text/printable.h"

#include "host/text/control_characters.h"

#include <algorithm>
#include <cstddef>

namespace host {

std::string printable(std::string_view text) {
    constexpr std::string_view HEX = "0123456789abcdef";
    std::string line;
    while (!text.empty()) {
        const std::size_t bytes = control_character_bytes(text);
        for (const char character : text.substr(0, bytes)) {
            const auto byte = static_cast<unsigned char>(character);
            line.append("\\x").append({HEX[byte / 16U], HEX[byte % 16U]});
        }
        line += bytes > 0 ? "" : text.substr(0, 1);
        text.remove_prefix(std::max<std::size_t>(bytes, 1));
    }
    return line;
}

}  // namespace host
