// An open file of the operating system.
#pragma once

#include <sys/types.h>

#include <string>
#include <system_error>

namespace host {

/// An open file, closed at the end of its life.
class FileDescriptor {
  public:
    /// Opens the file as open(2) does: `mode` is that of a new file, before the umask. What `open` says of a failure
    /// stands in errno.
    FileDescriptor(const std::string& path, int flags, mode_t mode = 0666);
    /// Another number for the open file that has this one, as dup(2) gives it.
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

/// The failure that errno holds.
std::error_code last_system_error();

}  // namespace host
