#include "bench/child.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>

namespace bench {

namespace {

double seconds(const timeval& time) {
    constexpr double MICROSECOND = 1e-6;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * MICROSECOND;
}

void replace_by_program(const std::vector<std::string>& arguments) {
    std::vector<char*> words;
    std::vector<std::string> copies = arguments;
    for (std::string& argument : copies) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    execvp(words.front(), words.data());
    throw std::runtime_error(arguments.front() + ": cannot be run");
}

}  // namespace

Cost cost_of(const std::function<void()>& body) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        try {
            body();
            _exit(0);
        } catch (...) {
            _exit(1);
        }
    }
    int status = 0;
    rusage used{};
    if (child < 0 || wait4(child, &status, 0, &used) != child || status != 0) {
        throw std::runtime_error("what was to be measured has failed");
    }
    constexpr double KILOBYTES = 1e-3;
    const auto peak = static_cast<double>(used.ru_maxrss);  // NOLINT(*-union-access): glibc declares the field so
    return {.processor_seconds = seconds(used.ru_utime) + seconds(used.ru_stime),
            .elapsed_seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
            .peak_megabytes = peak * KILOBYTES};
}

Cost cost_of_program(const std::vector<std::string>& arguments) {
    return cost_of([&] { replace_by_program(arguments); });
}

}  // namespace bench
