// Prints results on standard output.
#pragma once

#include "host/files/remedy.h"

#include <cerrno>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace host {

/// Returns what `write` writes to a stream. Throws what `write` throws.
template <class Write>
std::string rendered(Write write) {
    std::ostringstream out;
    write(out);
    return std::move(out).str();
}

/// Prints a result. Throws `std::runtime_error` with one line when it cannot be written completely.
inline void print_text(std::string_view text) {
    std::cout.exceptions(std::ios::badbit);  // throws at once, while errno holds the reason
    try {
        std::cout << text << std::flush;
    } catch (const std::ios::failure&) {
        const std::error_code failure(errno, std::generic_category());
        std::cout.exceptions(std::ios::goodbit);  // the rest is flushed at exit, and must fail quietly
        throw std::runtime_error("standard output: cannot be written (" + failure.message() + "); " +
                                 remedy_for(failure));
    }
}

/// Prints all that `write` writes, or nothing when `write` throws. Throws what `write` and `print_text` throw.
template <class Write>
void print(Write write) {
    print_text(rendered(std::move(write)));
}

}  // namespace host
