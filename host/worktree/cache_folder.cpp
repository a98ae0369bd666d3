#include "host/worktree/cache_folder.h"

#include "host/worktree/bytes.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace host::worktree {

namespace {

namespace fs = std::filesystem;

constexpr const char* REMEDY = "; set XDG_CACHE_HOME to a folder of your own, or name an index with --index";

// The value of a variable that is an absolute path; empty for others, which count as not set.
fs::path path_in(const char* variable) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the program never changes the environment
    const char* const value = std::getenv(variable);
    const fs::path path = value == nullptr ? "" : value;
    return path.is_absolute() ? path : fs::path();
}

fs::path cache_home() {
    if (fs::path home = path_in("XDG_CACHE_HOME"); !home.empty()) {
        return home;
    }
    const fs::path home = path_in("HOME");
    if (home.empty()) {
        throw std::runtime_error(std::string("no place for an index: neither XDG_CACHE_HOME nor HOME is set") + REMEDY);
    }
    return home / ".cache";
}

// "3f0a" and the like for a text.
std::string digits_of(std::string_view text) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    std::string digits;
    for (std::uint64_t rest = checksum(text); rest != 0; rest >>= 4U) {
        digits += DIGITS[rest & 0xFU];
    }
    return digits;
}

void make(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder.parent_path(), error);
    struct stat status {};
    const bool is_there = mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST;
    if (!is_there || lstat(folder.c_str(), &status) != 0) {
        error.assign(errno, std::generic_category());
        throw std::runtime_error(folder.string() + ": cannot be made (" + error.message() + ")" + REMEDY);
    }
    if (!S_ISDIR(status.st_mode) || status.st_uid != geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        throw std::runtime_error(folder.string() + ": not a folder that only you can write to" + REMEDY);
    }
}

}  // namespace

fs::path cache_folder(const fs::path& checkout) {
    const fs::path all = cache_home() / "wiki-scope";
    make(all);
    constexpr std::size_t LONGEST = 100;  // bytes of the checkout's own name, which only helps people
    fs::path folder = all / (checkout.filename().string().substr(0, LONGEST) + "-" + digits_of(checkout.string()));
    make(folder);
    return folder;
}

}  // namespace host::worktree
