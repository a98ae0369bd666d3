#include "embedded/text/printable.h"

namespace embedded {

std::string printable(std::string_view text) {
    constexpr std::string_view HEX = "0123456789abcdef";
    std::string line;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            line.append("\\x").append({HEX[byte / 16U], HEX[byte % 16U]});
        } else {
            line += character;
        }
    }
    return line;
}

}  // namespace embedded
