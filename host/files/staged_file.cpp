#include "host/files/staged_file.h"

#include "host/files/file_descriptor.h"
#include "host/files/remedy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace host {

namespace {

void write_all(const FileDescriptor& file, std::string_view text, const std::filesystem::path& place) {
    while (!text.empty()) {
        const ssize_t count = write(file.number(), text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            throw cannot_be_written(place, last_system_error());
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

}  // namespace

StagedFile::StagedFile(std::filesystem::path place, std::string_view text)
    : place_(std::move(place)),
      partial_(place_.parent_path() / ("." + place_.filename().string() + ".wiki-scope-partial")) {
    unlink(partial_.c_str());
    const FileDescriptor out(partial_, O_WRONLY | O_CREAT | O_EXCL);
    if (!out.is_open()) {
        throw cannot_be_written(place_, last_system_error());
    }
    try {
        struct stat old {};
        if (stat(place_.c_str(), &old) == 0 && fchmod(out.number(), old.st_mode & 0777U) != 0) {
            throw cannot_be_written(place_, last_system_error());
        }
        write_all(out, text, place_);
    } catch (...) {
        unlink(partial_.c_str());
        throw;
    }
}

StagedFile::~StagedFile() {
    if (!partial_.empty()) {
        unlink(partial_.c_str());
    }
}

StagedFile::StagedFile(StagedFile&& other) noexcept
    : place_(std::move(other.place_)), partial_(std::exchange(other.partial_, {})) {}

void StagedFile::commit() {
    if (std::rename(partial_.c_str(), place_.c_str()) != 0) {
        throw cannot_be_written(place_, last_system_error());
    }
    partial_.clear();
}

std::runtime_error cannot_be_written(const std::filesystem::path& path, const std::error_code& failure) {
    return std::runtime_error(path.string() + ": cannot be written (" + failure.message() + "); " +
                              remedy_for(failure));
}

}  // namespace host
