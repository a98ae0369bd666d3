// A system that gives a program no thread, or few.
#pragma once

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <exception>
#include <functional>
#include <string>

namespace host {

/// How many threads the thread sanitizer has of its own in such a process.
inline constexpr rlim_t SANITIZER_THREADS =
#ifdef __has_feature
#if __has_feature(thread_sanitizer)
    2 +
#endif
#endif
    0;

/// Runs `work` in a process of its own whose user may have so many processes and threads, itself among them. Gives what
/// `work` returns or throws; "terminated" when the process did not come to its end. Whoever is root becomes a user who
/// has no other process; for others, 0 is the only number that is certain to be reached.
inline std::string with_most_threads(rlim_t most, const std::function<std::string()>& work) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return "no pipe";
    }
    const pid_t child = fork();
    if (child == 0) {
        const auto nobody = static_cast<uid_t>(20'000 + getpid() % 40'000);
        const rlimit limit{most, most};
        const bool is_limited = (geteuid() != 0 || setuid(nobody) == 0) && setrlimit(RLIMIT_NPROC, &limit) == 0;
        std::string said = "no limit";
        try {
            said = is_limited ? work() : said;
        } catch (const std::exception& failure) {
            said = failure.what();
        }
        _exit(write(ends[1], said.data(), said.size()) < 0 ? 1 : 0);
    }
    close(ends[1]);
    std::string said(1024, '\0');
    said.resize(static_cast<std::size_t>(std::max<ssize_t>(read(ends[0], said.data(), said.size()), 0)));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? said : "terminated";
}

}  // namespace host
