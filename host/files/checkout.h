// The checkout: the working tree of an indexed repository.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The lines of a file when it was read.
struct FileLines {
    std::vector<std::string> lines;
    std::int64_t hash = 0;  ///< the `ContentHash` of all bytes
};

/// The content of a file when it was read.
struct FileContent {
    std::int64_t hash = 0;            ///< the `ContentHash` of all bytes
    std::optional<std::string> text;  ///< all bytes; none when there are too many
};

/// Splits the text of a file into lines, as `Checkout::read_lines` does.
std::vector<std::string> lines_of(std::string_view text);

/// Reads files below one folder, and none outside of it.
class Checkout {
  public:
    /// `root` may be a symbolic link; it is resolved here. Throws `std::runtime_error` with one line that says what to
    /// do when it is not a folder, or cannot be entered.
    explicit Checkout(const std::string& root);

    /// The absolute path of the root, free of symbolic links.
    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

    /// Converts a path of this machine, absolute or relative to the current folder, to a path relative to the root.
    /// Segments are separated by "/"; the root is "". Returns none when the path lies outside of the root. The file or
    /// folder need not exist.
    [[nodiscard]] std::optional<std::string> path_below(const std::string& path) const;

    /// Returns the lines of the file at `path` (relative to the root, segments separated by "/"). LF and CRLF end a
    /// line and are not part of it; a CR alone does not. A last line without an end counts, a byte-order mark is
    /// dropped, an empty file has no lines.
    ///
    /// Returns none when the path is empty, absolute or has a segment "..", when a symbolic link leads out of the root,
    /// when there is no regular file, and when it cannot be read. Never waits on a pipe or a device.
    [[nodiscard]] std::optional<FileLines> read_lines(std::string_view path) const;

    /// Returns whether `path` exists and a symbolic link leads from it out of the root.
    [[nodiscard]] bool leads_out(std::string_view path) const;

    /// Returns the content of the file at `path`, with its text if that has at most `most` bytes. Returns none when
    /// `read_lines` does.
    [[nodiscard]] std::optional<FileContent> read(std::string_view path, std::size_t most) const;

  private:
    /// Resolves the symbolic links of `path`. Returns none when the result is not a regular file below the root.
    [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view path) const;

    std::filesystem::path root_;
};

}  // namespace host
