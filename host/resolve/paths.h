// Paths of a repository's files, relative to its root.
#pragma once

#include "host/resolve/repository.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace host::resolve {

/// "a/b/c.ts" -> "a/b"; "" for a file in the root.
std::string_view folder_of(std::string_view path);

/// "a/b/c.ts" -> "c.ts"
std::string_view file_name(std::string_view path);

/// "a/b.d/c.test.ts" -> "c.test"
std::string_view stem(std::string_view path);

/// Returns `path` as seen from `folder`, free of "." and ".."; none when that leads out of the repository.
std::optional<std::string> joined(std::string_view folder, std::string_view path);

/// The files of a repository by path, and its folders that hold any, at any depth.
class FilesByPath {
  public:
    /// `repository` must outlive the object.
    explicit FilesByPath(const Repository& repository);

    /// Returns none when there is no such file.
    [[nodiscard]] std::optional<FileId> find(std::string_view path) const;
    [[nodiscard]] bool has_folder(std::string_view path) const { return folders_.contains(path); }

  private:
    std::unordered_map<std::string_view, FileId> files_;
    std::unordered_set<std::string_view> folders_;
};

}  // namespace host::resolve
