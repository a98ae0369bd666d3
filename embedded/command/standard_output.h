// Results for standard output.
#pragma once

#include <cerrno>
#include <iostream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace embedded {

/// Has `write` write to standard output, and sees to it that all of it arrives. Throws `std::runtime_error` with one
/// line at the first failure, without waiting for the end of `write`.
template <class Write>
void print(Write write) {
    std::cout.exceptions(std::ios::badbit);  // at once, while errno still says why
    try {
        write(std::cout);
        std::cout.flush();
    } catch (const std::ios::failure&) {
        const std::string reason = std::generic_category().message(errno);
        std::cout.exceptions(std::ios::goodbit);  // what is left in it is tried again, and must fail quietly
        throw std::runtime_error("standard output: cannot be written (" + reason +
                                 "); make room, or send it elsewhere");
    }
}

}  // namespace embedded
