// What a program costs from its start to its exit.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Cost {
    double processor_seconds = 0;  ///< of the user and of the system
    double elapsed_seconds = 0;
    double peak_megabytes = 0;  ///< of memory in use at once
};

/// Runs `body` in a child process of its own. Throws `std::runtime_error` unless it comes to its end.
Cost cost_of(const std::function<void()>& body);

/// Runs a program, found as a shell finds it, and drops what it prints. Throws so too unless it exits with 0.
Cost cost_of_program(const std::vector<std::string>& arguments);

}  // namespace bench
