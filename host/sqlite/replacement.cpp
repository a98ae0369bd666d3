#include "host/sqlite/replacement.h"

#include "host/files/remedy.h"
#include "host/sqlite/sqlite_connection.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

namespace {

// What SQLite keeps beside a database.
constexpr std::array JOURNALS{"-journal", "-wal", "-shm"};

bool exists(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error);
}

// Where a path leads that may be a symbolic link, even to nothing.
std::string followed(const std::string& path) {
    constexpr int MOST_LINKS = 40;  // as many as the system follows
    fs::path end = path;
    std::error_code error;
    for (int links = 0; fs::is_symlink(end, error); ++links) {
        const fs::path target = fs::read_symlink(end, error);
        if (links == MOST_LINKS) {
            error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
        }
        if (error) {
            throw cannot_replace(path, error);
        }
        end = end.parent_path() / target;
    }
    return end;
}

// The name of a file of our own that belongs to the one at the path.
std::string companion(const fs::path& path, const std::string& role) {
    return path.parent_path() / ("." + path.filename().string() + ".wiki-scope-" + role);
}

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

std::optional<mode_t> permissions_of(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? std::optional(status.st_mode & 07777U) : std::nullopt;
}

// Has SQLite put into a database what its journals hold of it, unless a journal is that of a program which is writing.
// One that is too damaged for that has nothing to lose.
void fold_journals_into(const std::string& path) {
    try {
        SqliteConnection(path, SqliteConnection::Mode::CREATE)
            .execute("PRAGMA journal_mode = DELETE; BEGIN IMMEDIATE; COMMIT");
    } catch (const SqliteError& error) {
        if (!error.is_damage()) {
            throw;
        }
    }
}

// Leaves a database without journals. SQLite would play what is left of them into whatever file comes to stand at the
// path, so they must be gone before the new file is there; and they may hold what was written last, so that the old
// file, which stands until then, must have it first.
void settle_journals(const std::string& path) {
    const auto is_there = [&](const char* journal) { return exists(path + journal); };
    if (std::none_of(JOURNALS.begin(), JOURNALS.end(), is_there)) {
        return;
    }
    if (exists(path)) {
        fold_journals_into(path);
    }
    for (const char* const journal : JOURNALS) {
        unlink((path + journal).c_str());
    }
}

std::string folder_of(const std::string& path) {
    const std::string folder = fs::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

}  // namespace

ReplacementLock::ReplacementLock(const std::string& path)
    : lock_path_(companion(path, "lock")), file_(acquire(path, lock_path_)) {}

ReplacementLock::~ReplacementLock() {
    // While the lock is still held: nobody else's file is removed.
    unlink(lock_path_.c_str());
}

Replacement::Replacement(const std::string& path)
    : path_(followed(path)), partial_path_(companion(path_, "partial")), lock_(path_),
      old_mode_(permissions_of(path_)) {
    remove_partial();
    // While it is being filled, nobody may read of a private index.
    const mode_t mode = old_mode_ ? S_IRUSR | S_IWUSR : 0666;
    if (!FileDescriptor(partial_path_, O_WRONLY | O_CREAT | O_EXCL, mode).is_open()) {
        throw cannot_replace(path_, last_system_error());
    }
}

Replacement::~Replacement() {
    remove_partial();
}

void Replacement::remove_partial() const {
    unlink(partial_path_.c_str());
    for (const char* const journal : JOURNALS) {
        unlink((partial_path_ + journal).c_str());
    }
}

void Replacement::sync() const {
    const FileDescriptor partial(partial_path_, O_RDONLY);
    if (!partial.is_open() || (old_mode_ && fchmod(partial.number(), *old_mode_) != 0) ||
        fsync(partial.number()) != 0) {
        throw cannot_replace(path_, last_system_error());
    }
}

void Replacement::commit() const {
    settle_journals(path_);
    if (std::rename(partial_path_.c_str(), path_.c_str()) != 0) {
        throw cannot_replace(path_, last_system_error());
    }
    // The new file is in its place by now, and there are file systems that cannot sync a folder.
    if (const FileDescriptor folder(folder_of(path_), O_RDONLY | O_DIRECTORY); folder.is_open()) {
        fsync(folder.number());
    }
}

std::runtime_error cannot_replace(const std::string& path, const std::string& reason, const std::string& remedy) {
    return std::runtime_error(path + ": cannot be written (" + reason + ")" +
                              (exists(path) ? ", and is as it was before" : "") + "; " + remedy);
}

std::runtime_error cannot_replace(const std::string& path, const std::error_code& failure) {
    return cannot_replace(path, failure.message(), remedy_for(failure));
}

}  // namespace host
