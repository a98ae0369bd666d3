// The checkout: the working tree of the repository whose index is read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The lines of a file as it was when it was read.
struct FileLines {
    std::vector<std::string> lines;
    std::int64_t hash = 0;  ///< as `ContentHash` gives it, of all bytes
};

/// A file as it was when it was read.
struct FileContent {
    std::int64_t hash = 0;            ///< as `ContentHash` gives it, of all bytes
    std::optional<std::string> text;  ///< its bytes; none when they are too many
};

/// The lines of a file with this text, as `Checkout::read_lines` gives them.
std::vector<std::string> lines_of(std::string_view text);

/// Reads files below one folder, and nothing outside of it.
class Checkout {
  public:
    /// `root` may be a symbolic link; where it leads is settled here. Throws `std::runtime_error` with one line that
    /// says what to do when it is not an existing folder.
    explicit Checkout(const std::string& root);

    /// Free of symbolic links.
    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

    /// Where a file or a folder that is called `path` on this machine, relative to the current folder or absolute, lies
    /// below the root: segments separated by "/", "" for the root itself. None when it lies elsewhere. It need not be
    /// there.
    [[nodiscard]] std::optional<std::string> path_below(const std::string& path) const;

    /// The lines of the file at `path` (relative to the root, segments separated by "/"). LF and CRLF end a line and
    /// are not part of it; a CR alone is a character like any other. A last line without an end counts, a byte-order
    /// mark is dropped, an empty file has no lines.
    ///
    /// None when the path is empty, absolute or has a segment "..", when a symbolic link leads out of the root, when
    /// there is no regular file, and when there is one that may not be read or whose reading fails: such a file is
    /// like one that is not there. Never waits on a pipe or a device.
    [[nodiscard]] std::optional<FileLines> read_lines(std::string_view path) const;

    /// Whether there is something at `path`, and a symbolic link leads from there out of the root.
    [[nodiscard]] bool leads_out(std::string_view path) const;

    /// The content of the file at `path`, with its text if that has at most `most` bytes. None when `read_lines` gives
    /// none.
    [[nodiscard]] std::optional<FileContent> read(std::string_view path, std::size_t most) const;

  private:
    /// Where `path` leads, free of symbolic links; none when that is no regular file below the root.
    [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view path) const;

    std::filesystem::path root_;
};

}  // namespace host
