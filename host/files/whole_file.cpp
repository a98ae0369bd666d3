#include "host/files/whole_file.h"

#include "host/files/file_descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace host {

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error(path + ": cannot be read (" + reason + ")");
}

}  // namespace

std::optional<std::string> whole_file(const std::string& path, std::size_t most) {
    const FileDescriptor file(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file.is_open()) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        fail(path, last_system_error().message());
    }
    struct stat status {};
    if (fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        fail(path, "it is no regular file");
    }
    std::string bytes;
    while (true) {  // to its end, since it may grow
        constexpr std::size_t PIECE = 65'536;
        const std::size_t size = bytes.size();
        bytes.resize(size + PIECE);
        const ssize_t count = read(file.number(), bytes.data() + size, PIECE);
        bytes.resize(size + static_cast<std::size_t>(count > 0 ? count : 0));
        if (count < 0 && errno != EINTR) {
            fail(path, last_system_error().message());
        }
        if (bytes.size() > most) {
            fail(path, "it is larger than " + std::to_string(most) + " bytes");
        }
        if (count == 0) {
            return bytes;
        }
    }
}

}  // namespace host
