// A file descriptor of the operating system that closes itself.
#pragma once

#include <sys/types.h>

#include <string>
#include <system_error>

namespace host {

/// Owns a file descriptor and closes it.
class FileDescriptor {
  public:
    /// Opens a file as open(2) does; `mode` is the mode of a new file, before the umask. On failure, `is_open` is false
    /// and errno holds the reason.
    FileDescriptor(const std::string& path, int flags, mode_t mode = 0666);
    /// Duplicates a descriptor as dup(2) does. `number` stays open.
    explicit FileDescriptor(int number);
    ~FileDescriptor();
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    FileDescriptor& operator=(FileDescriptor&&) = delete;

    [[nodiscard]] bool is_open() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }

  private:
    int number_;
};

/// Returns errno as an error code.
std::error_code last_system_error();

}  // namespace host
