// A file that takes the place of another at once and whole, or not at all.
#pragma once

#include "host/files/file_descriptor.h"

#include <sys/types.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

namespace host {

/// The right to replace a file, which one process at a time can have. It is a lock on `.<name>.wiki-scope-lock` beside
/// the file, which a killed process loses; the locked file itself goes with the lock.
class ReplacementLock {
  public:
    /// Throws `std::runtime_error` with one line when the lock is held, or cannot be made.
    explicit ReplacementLock(const std::string& path);
    ~ReplacementLock();
    ReplacementLock(const ReplacementLock&) = delete;
    ReplacementLock& operator=(const ReplacementLock&) = delete;

  private:
    std::string lock_path_;
    FileDescriptor file_;
};

/// Makes a SQLite database beside the one that it shall replace.
///
///     Replacement replacement("wiki.db");
///     fill(replacement.partial_path());   // and close it
///     replacement.sync();
///     replacement.commit();
///
/// Until `commit` the old file stays as it was, whatever happens; after it the new one is there, even if the machine
/// loses power. What a replacement that was killed has left behind is removed by the next.
///
/// Where the path is a symbolic link, the file that it leads to is replaced, and the link stays. The new file has the
/// permission bits of the old; it belongs to whoever replaces it.
class Replacement {
  public:
    /// Throws as `ReplacementLock` does.
    explicit Replacement(const std::string& path);
    /// Removes the partial file unless it has been committed.
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// `.<name>.wiki-scope-partial` beside the file: an empty file at first.
    [[nodiscard]] const std::string& partial_path() const { return partial_path_; }

    /// Makes the partial file durable, which takes its time. Throws `std::runtime_error` with one line.
    void sync() const;

    /// Puts the partial file into its place, at once. Throws `std::runtime_error` with one line when that cannot be
    /// done, or when another program has the old database open and has not yet put all it wrote into it.
    void commit() const;

  private:
    void remove_partial() const;

    std::string path_;
    std::string partial_path_;
    ReplacementLock lock_;
    std::optional<mode_t> old_mode_;
};

/// The error of a file that could not be replaced for `reason`. It says so, that the old one, if any, stands, and the
/// remedy.
std::runtime_error cannot_replace(const std::string& path, const std::string& reason, const std::string& remedy);
std::runtime_error cannot_replace(const std::string& path, const std::error_code& failure);

}  // namespace host
