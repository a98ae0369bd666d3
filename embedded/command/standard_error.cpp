#include "embedded/command/standard_error.h"

#include <iostream>

namespace embedded {

void say(std::string_view message) {
    constexpr std::string_view HEX = "0123456789abcdef";
    std::cerr << "wiki-scope: ";
    for (const char character : message) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            std::cerr << "\\x" << HEX[byte / 16U] << HEX[byte % 16U];
        } else {
            std::cerr << character;
        }
    }
    std::cerr << '\n';
}

}  // namespace embedded
