#include "host/files/folder_name.h"

#include <filesystem>
#include <system_error>

namespace host {

std::string folder_name(const std::string& path) {
    std::error_code error;
    const std::filesystem::path settled = std::filesystem::weakly_canonical(path, error);
    const std::filesystem::path folder = error ? std::filesystem::path(path).lexically_normal() : settled;
    return (folder.has_filename() ? folder : folder.parent_path()).filename();
}

}  // namespace host
