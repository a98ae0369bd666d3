#include "host/files/nameless_file.h"

#include "host/files/remedy.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace host {

namespace {

std::runtime_error failure(const std::string& path, const std::string& what) {
    const std::error_code error = last_system_error();
    return std::runtime_error(path + ": " + what + " (" + error.message() + "); " + remedy_for(error));
}

// Calls `call(done)` until it has transferred all bytes. Returns false when it fails or makes no progress.
template <class Call>
bool transfer(std::uint64_t size, Call call) {
    for (std::uint64_t done = 0; done < size;) {
        const ssize_t count = call(done);
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return false;
        }
        done += static_cast<std::uint64_t>(std::max<ssize_t>(count, 0));
    }
    return true;
}

// Creates the file itself and opens no existing one, since anybody may have put that into a shared folder.
FileDescriptor new_file(const std::string& path) {
    unlink(path.c_str());
    return {path, O_RDWR | O_CREAT | O_EXCL, 0600};
}

}  // namespace

NamelessFile::NamelessFile(const std::string& path) : path_(path), file_(new_file(path)) {
    if (!file_.is_open()) {
        throw failure(path_, "cannot be created");
    }
    unlink(path_.c_str());
}

void NamelessFile::append(std::string_view bytes) {
    const bool is_written = transfer(bytes.size(), [&](std::uint64_t done) {
        return pwrite(file_.number(), bytes.data() + done, bytes.size() - done, static_cast<off_t>(size_ + done));
    });
    if (!is_written) {
        throw failure(path_, "cannot be written");
    }
    size_ += bytes.size();
}

void NamelessFile::read(std::uint64_t offset, std::span<char> bytes) const {
    const bool is_read = transfer(bytes.size(), [&](std::uint64_t done) {
        return pread(file_.number(), bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
    });
    if (!is_read) {
        throw failure(path_, "cannot be read");
    }
}

}  // namespace host
