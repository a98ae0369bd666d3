// A file that takes the place of another at once and whole, or not at all.
#pragma once

#include "embedded/scip/file_descriptor.h"

#include <stdexcept>
#include <string>

namespace embedded::scip {

/// The right to replace a file, which one process at a time can have. It is a lock on `<path>.lock`, which a killed
/// process loses; the file itself goes with the lock.
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
///     replacement.commit();
///
/// Until `commit` the old file stays as it was, whatever happens; after it the new one is there, even if the machine
/// loses power. What a replacement that was killed has left behind is removed by the next.
class Replacement {
  public:
    /// Throws as `ReplacementLock` does.
    explicit Replacement(std::string path);
    /// Removes the partial file unless it has been committed.
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// `<path>.partial`; there is no such file at first.
    [[nodiscard]] const std::string& partial_path() const { return partial_path_; }

    /// Throws `std::runtime_error` with one line when the file cannot be made durable or put into its place.
    void commit();

  private:
    void remove_partial() const;

    std::string path_;
    std::string partial_path_;
    ReplacementLock lock_;
};

/// The error of a file that could not be replaced for `reason`. It says so, and that the old one stands.
std::runtime_error cannot_replace(const std::string& path, const std::string& reason);

}  // namespace embedded::scip
