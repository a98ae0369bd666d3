// The commits of a repository of Git, read without running Git and without what configures it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace host::revisions {

class Objects;

/// For one thread at a time.
class Commits {
  public:
    /// `root` is the root of a checkout. Throws `std::runtime_error` with one line when it has no repository, or one
    /// whose objects cannot be read.
    explicit Commits(std::filesystem::path root);
    ~Commits();
    Commits(const Commits&) = delete;
    Commits& operator=(const Commits&) = delete;

    /// Returns the hash of the commit that a name (revision_name.h) stands for, none when it stands for none. Of a
    /// branch and a tag of one name the tag counts, as Git has it; the beginning of a hash must be that of one object.
    [[nodiscard]] std::optional<std::string> find(std::string_view name) const;

    /// Writes the regular files of a commit into an empty folder, with an index of Git that tracks them: a checkout to
    /// be read by this program. Symbolic links, submodules and what no system would check out are left out. Calls
    /// `check_interrupt` for each file, and throws what that throws, and `std::runtime_error` with one line when
    /// objects are missing or the files cannot be written.
    void check_out(const std::string& commit, const std::filesystem::path& folder,
                   const std::function<void()>& check_interrupt) const;

  private:
    const std::filesystem::path root_;
    std::unique_ptr<Objects> objects_;
};

}  // namespace host::revisions
