// The folder in which the files of a wiki lie.
#pragma once

#include "host/files/file_descriptor.h"
#include "host/files/staged_file.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::pages {

/// Reads the files of a wiki, and replaces them: new ones are staged (staged_file.h), and take their places in `commit`.
/// So each is written whole or not at all, and a run that ends before has changed nothing.
///
/// Files go by their paths in the folder. None is reached through a symbolic link, which may lead anywhere. Every
/// function throws `std::runtime_error` with one line that names the file.
class WikiFolder {
  public:
    enum class Access : std::uint8_t {
        READ,   ///< the folder may be missing, and has no files then
        WRITE,  ///< the folder is made, and nobody else can write to it through this class
    };
    WikiFolder(const std::string& path, Access access);

    /// Returns the path of a file on this machine.
    [[nodiscard]] std::string path_of(const std::string& file) const { return root_ / file; }

    /// Returns the text of a file; none when it is not there.
    [[nodiscard]] std::optional<std::string> read(const std::string& file) const;

    /// Stages the new text of a file. The file keeps its permission bits.
    void stage(const std::string& file, std::string_view text);

    /// Makes what is staged durable, and puts all of it into its places.
    void commit();

    /// Removes a file, and the folders that are empty then.
    void remove(const std::string& file) const;

  private:
    [[nodiscard]] std::filesystem::path place_of(const std::string& file) const;

    std::filesystem::path root_;
    std::optional<FileDescriptor> lock_;
    std::vector<StagedFile> staged_;
};

}  // namespace host::pages
