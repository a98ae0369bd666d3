#include "host/command/standard_error.h"

#include "host/text/printable.h"

#include <algorithm>
#include <iostream>
#include <string>

namespace host {

namespace {

// Messages quote wrong arguments, and such an argument may be an address with a password.
std::string without_passwords(std::string message) {
    constexpr std::string_view SCHEME = "://";
    for (std::size_t found = message.find(SCHEME); found != std::string::npos;) {
        const std::size_t user = found + SCHEME.size();
        const std::size_t end = std::min(message.find(' ', user), message.size());
        const std::size_t at = std::string_view(message).substr(0, end).rfind('@');
        const std::size_t colon = message.find(':', user);
        if (at != std::string::npos && colon < at) {
            message.erase(colon, at - colon);
        }
        found = message.find(SCHEME, user);
    }
    constexpr std::string_view PASSWORD = "password=";
    for (std::size_t found = message.find(PASSWORD); found != std::string::npos;) {
        const std::size_t value = found + PASSWORD.size();
        message.erase(value, std::min(message.find_first_of("& ", value), message.size()) - value);
        found = message.find(PASSWORD, value);
    }
    return message;
}

}  // namespace

void say(std::string_view message) {
    // In one call, since other programs may write to the same file.
    std::cerr << "wiki-scope: " + printable(without_passwords(std::string(message))) + "\n";
}

}  // namespace host
