#include "embedded/files/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace embedded {

InputFile::InputFile(const std::string& path)
    : path_(path), file_(path, O_RDONLY | O_NONBLOCK) {  // not to wait for a writer, should the file be a pipe
    if (!file_.is_open() && errno == ENOENT) {
        throw std::runtime_error(path + ": no such file; give the file that a SCIP indexer has written");
    }
    struct stat status {};
    if (!file_.is_open() || fstat(file_.number(), &status) != 0) {
        throw std::runtime_error(path + ": cannot be opened (" + last_system_error() +
                                 "); check its permissions and those of its folder");
    }
    if (!S_ISREG(status.st_mode)) {
        throw std::runtime_error(path + ": not a regular file; give the file that a SCIP indexer has written");
    }
    size_ = static_cast<std::size_t>(status.st_size);
}

std::string_view InputFile::read(std::size_t offset, std::size_t size) {
    const std::size_t there = std::min(size, size_ - offset);
    if (offset < window_offset_ || offset + there > window_offset_ + window_.size()) {
        move_window(offset, there);
    }
    return std::string_view(window_).substr(offset - window_offset_, there);
}

void InputFile::move_window(std::size_t offset, std::size_t size) {
    constexpr std::size_t AT_LEAST = 262'144;  // bytes, so that small pieces that lie together take one call
    window_.resize(std::min(std::max(size, AT_LEAST), size_ - offset));
    window_offset_ = offset;
    std::size_t filled = 0;
    while (filled < window_.size()) {
        const ssize_t count = pread(file_.number(), window_.data() + filled, window_.size() - filled,
                                    static_cast<off_t>(offset + filled));
        if (count < 0 && errno != EINTR) {
            throw std::runtime_error(path_ + ": cannot be read (" + last_system_error() + "); check its disk");
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    window_.resize(filled);
}

}  // namespace embedded
