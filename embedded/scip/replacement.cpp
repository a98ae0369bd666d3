#include "embedded/scip/replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

namespace embedded::scip {

namespace {

// Whether the open file is still the one at the path: its last owner may have removed it in the meantime.
bool is_at(const FileDescriptor& file, const std::string& path) {
    struct stat opened {};
    struct stat found {};
    return fstat(file.number(), &opened) == 0 && stat(path.c_str(), &found) == 0 && opened.st_dev == found.st_dev &&
           opened.st_ino == found.st_ino;
}

FileDescriptor acquire(const std::string& path, const std::string& lock_path) {
    while (true) {
        FileDescriptor file(lock_path, O_RDWR | O_CREAT);
        if (!file.is_open()) {
            throw cannot_replace(path, last_system_error());
        }
        if (flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK) {
                throw std::runtime_error(path + ": another import into this index is running; wait for it to end");
            }
            throw cannot_replace(path, last_system_error());
        }
        if (is_at(file, lock_path)) {
            return file;
        }
    }
}

std::string folder_of(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

}  // namespace

ReplacementLock::ReplacementLock(const std::string& path)
    : lock_path_(path + ".lock"), file_(acquire(path, lock_path_)) {}

ReplacementLock::~ReplacementLock() {
    // While the lock is still held: nobody else's file is removed.
    unlink(lock_path_.c_str());
}

Replacement::Replacement(std::string path) : path_(std::move(path)), partial_path_(path_ + ".partial"), lock_(path_) {
    remove_partial();
}

Replacement::~Replacement() {
    remove_partial();
}

void Replacement::remove_partial() const {
    for (const char* const suffix : {"", "-journal", "-wal", "-shm"}) {
        unlink((partial_path_ + suffix).c_str());
    }
}

void Replacement::commit() {
    const FileDescriptor partial(partial_path_, O_RDONLY);
    if (!partial.is_open() || fsync(partial.number()) != 0 || std::rename(partial_path_.c_str(), path_.c_str()) != 0) {
        throw cannot_replace(path_, last_system_error());
    }
    // The new file is in its place by now, and there are file systems that cannot sync a folder.
    if (const FileDescriptor folder(folder_of(path_), O_RDONLY | O_DIRECTORY); folder.is_open()) {
        fsync(folder.number());
    }
}

std::runtime_error cannot_replace(const std::string& path, const std::string& reason) {
    return std::runtime_error(path + ": cannot be written (" + reason +
                              "), and is as it was before; make room or choose another place, and import again");
}

}  // namespace embedded::scip
