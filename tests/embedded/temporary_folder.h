// A folder of its own for each test, fuzz target and benchmark.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace embedded {

/// An empty folder that is removed with all its contents at the end.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "wiki-scope-XXXXXX";
        path_ = mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The absolute path of something in the folder.
    [[nodiscard]] std::string operator/(std::string_view name) const { return path_ / name; }

    /// Writes a file, and the folders above it; returns its absolute path.
    std::string write(std::string_view name, std::string_view contents) const {
        const std::filesystem::path path = path_ / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << contents;
        return path;
    }

    [[nodiscard]] std::string read(std::string_view name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::filesystem::path path_;
};

}  // namespace embedded
