#include "host/command/browser.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace host {

namespace {

bool is_set(const char* variable) {
    const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): nothing here sets variables
    return value != nullptr && *value != '\0';
}

}  // namespace

bool open_in_browser(const std::string& path) {
    if (!is_set("DISPLAY") && !is_set("WAYLAND_DISPLAY")) {
        return false;
    }
    std::string name = "xdg-open";
    std::string argument = path;
    const std::array<char*, 3> arguments{name.data(), argument.data(), nullptr};
    pid_t process = 0;
    // No shell reads the path.
    if (posix_spawnp(&process, name.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) {
        return false;
    }
    int status = 0;
    return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace host
