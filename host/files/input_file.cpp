#include "host/files/input_file.h"

#include "host/files/nameless_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <utility>

namespace host {

namespace {

constexpr const char* STANDARD_INPUT = "-";

FileDescriptor opened(const std::string& path) {
    // Does not block on a pipe without a writer: `copy_of` waits for it, and can be interrupted.
    return path == STANDARD_INPUT ? FileDescriptor(STDIN_FILENO) : FileDescriptor(path, O_RDONLY | O_NONBLOCK);
}

std::runtime_error unreadable(const std::string& name) {
    return std::runtime_error(name + ": cannot be read (" + last_system_error().message() +
                              "); check where it comes from");
}

// Copies all that a pipe writes into the file at `path`.
FileDescriptor copy_of(const FileDescriptor& pipe, const std::string& name, const std::string& path,
                       const std::function<void()>& check_interrupt) {
    constexpr int PATIENCE = 100;  // milliseconds
    NamelessFile copy(path);
    std::array<char, 65'536> piece{};
    while (true) {
        check_interrupt();
        pollfd waiting{.fd = pipe.number(), .events = POLLIN, .revents = 0};
        if (poll(&waiting, 1, PATIENCE) == 0) {
            continue;
        }
        const ssize_t count = ::read(pipe.number(), piece.data(), piece.size());
        if (count == 0) {
            return std::move(copy).release();
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            throw unreadable(name);
        }
        copy.append({piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))});
    }
}

// Returns the file itself, or a copy of what it writes where it cannot be read at any offset.
FileDescriptor seekable(FileDescriptor file, const std::string& name, const std::string& copy_path,
                        const std::function<void()>& check_interrupt) {
    if (!file.is_open() && errno == ENOENT) {
        throw std::runtime_error(name + ": no such file; name a file that a SCIP indexer has written");
    }
    struct stat status {};
    if (!file.is_open() || fstat(file.number(), &status) != 0) {
        throw std::runtime_error(name + ": cannot be opened (" + last_system_error().message() +
                                 "); check its permissions and those of its folder");
    }
    if (S_ISREG(status.st_mode)) {
        return file;
    }
    if (S_ISDIR(status.st_mode) || S_ISBLK(status.st_mode)) {
        throw std::runtime_error(name + ": a folder or a disk; name a file that a SCIP indexer has written");
    }
    return copy_of(file, name, copy_path, check_interrupt);
}

std::size_t size_of(const FileDescriptor& file) {
    struct stat status {};
    return fstat(file.number(), &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

}  // namespace

InputFile::InputFile(const std::string& path, const std::string& copy_path,
                     const std::function<void()>& check_interrupt)
    : name_(path == STANDARD_INPUT ? "standard input" : path),
      file_(seekable(opened(path), name_, copy_path, check_interrupt)), size_(size_of(file_)) {}

std::string_view InputFile::read(std::size_t offset, std::size_t size) {
    const std::size_t there = std::min(size, size_ - offset);
    if (offset < window_offset_ || offset + there > window_offset_ + window_.size()) {
        move_window(offset, there);
    }
    return std::string_view(window_).substr(offset - window_offset_, there);
}

void InputFile::move_window(std::size_t offset, std::size_t size) {
    constexpr std::size_t AT_LEAST = 262'144;  // bytes, so that neighbouring small pieces take one call of the system
    window_.resize(std::min(std::max(size, AT_LEAST), size_ - offset));
    window_offset_ = offset;
    std::size_t filled = 0;
    while (filled < window_.size()) {
        const ssize_t count = pread(file_.number(), window_.data() + filled, window_.size() - filled,
                                    static_cast<off_t>(offset + filled));
        if (count < 0 && errno != EINTR) {
            throw unreadable(name_);
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    window_.resize(filled);
}

}  // namespace host
