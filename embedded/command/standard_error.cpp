#include "embedded/command/standard_error.h"

#include <iostream>
#include <string>

namespace embedded {

void say(std::string_view message) {
    constexpr std::string_view HEX = "0123456789abcdef";
    std::string line = "wiki-scope: ";
    for (const char character : message) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            line.append("\\x").append({HEX[byte / 16U], HEX[byte % 16U]});
        } else {
            line += character;
        }
    }
    std::cerr << (line += '\n');  // at once: other programs may write to the same file
}

}  // namespace embedded
