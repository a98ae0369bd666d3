// Results for standard output.
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

/// What `write` writes to a stream. Throws what `write` throws.
template <class Write>
std::string rendered(Write write) {
    std::ostringstream out;
    write(out);
    return std::move(out).str();
}

/// Prints a result. Throws `std::runtime_error` with one line when not all of it arrives.
inline void print_text(std::string_view text) {
    std::cout.exceptions(std::ios::badbit);  // at once, while errno still says why
    try {
        std::cout << text << std::flush;
    } catch (const std::ios::failure&) {
        const std::error_code failure(errno, std::generic_category());
        std::cout.exceptions(std::ios::goodbit);  // what is left in it is tried again, and must fail quietly
        throw std::runtime_error("standard output: cannot be written (" + failure.message() + "); " +
                                 remedy_for(failure));
    }
}

/// Prints what `write` writes once it is whole: nothing when `write` throws. Throws what it throws, and as `print_text`.
template <class Write>
void print(Write write) {
    print_text(rendered(std::move(write)));
}

}  // namespace host
