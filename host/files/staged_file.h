// A file whose new text is written beside it first.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace host {

/// The new text of a file, as `.<name>.wiki-scope-partial` beside the place that it takes in `commit`. So the file is
/// written whole or not at all.
class StagedFile {
  public:
    /// Writes the text; the file in its place, if any, stays as it is, and lends its permission bits. What a program
    /// that was killed has left behind is replaced. Throws `std::runtime_error` with one line that names the place.
    StagedFile(std::filesystem::path place, std::string_view text);
    /// Removes the text unless it was committed.
    ~StagedFile();
    StagedFile(StagedFile&& other) noexcept;
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    StagedFile& operator=(StagedFile&&) = delete;

    /// Puts the text into its place, at once. Throws as the constructor does. Making it durable is for the caller.
    void commit();

  private:
    std::filesystem::path place_;
    std::filesystem::path partial_;  // empty once it is committed or moved
};

/// The failure to write a file or a folder, with advice.
std::runtime_error cannot_be_written(const std::filesystem::path& path, const std::error_code& failure);

}  // namespace host
