// The files that Git tracks.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::git {

/// Reads the paths in an index of Git (its format of versions 2 to 4, with hashes of either size), ascending. None for
/// anything else, and for an index that is split over several files.
std::optional<std::vector<std::string>> read_git_index(std::string_view bytes);

/// Writes an index of Git that tracks these paths, and says nothing else: for a checkout that only this program reads.
std::string git_index_of(std::vector<std::string> paths);

/// Which files a repository tracks. Git is not asked, and what configures it is not read.
class TrackedFiles {
  public:
    /// `root` is the folder of a checkout. None are tracked where there is no repository, or its index cannot be read.
    explicit TrackedFiles(const std::filesystem::path& root);

    /// Paths are relative to the root.
    [[nodiscard]] bool hold(std::string_view path) const;
    [[nodiscard]] bool hold_some_below(std::string_view folder) const;

  private:
    std::vector<std::string> paths_;  // ascending
};

}  // namespace host::git
