#include "host/files/file_descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace host {

FileDescriptor::FileDescriptor(const std::string& path, int flags, mode_t mode)
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system declares it so
    : number_(open(path.c_str(), flags | O_CLOEXEC, mode)) {}

FileDescriptor::FileDescriptor(int number)
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system declares it so
    : number_(fcntl(number, F_DUPFD_CLOEXEC, 0)) {}

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

FileDescriptor::~FileDescriptor() {
    if (is_open()) {
        close(number_);
    }
}

std::error_code last_system_error() {
    return {errno, std::generic_category()};
}

}  // namespace host
