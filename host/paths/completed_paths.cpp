#include "host/paths/completed_paths.h"

#include <algorithm>
#include <cstddef>

namespace host {

std::vector<std::string> completed_paths(storage::Database& db, std::string_view beginning) {
    const std::size_t folder_end = beginning.rfind('/');
    const std::string_view folder = folder_end == std::string_view::npos ? "" : beginning.substr(0, folder_end);
    std::vector<std::string> paths;
    db.read_files_below(folder, [&](const FileRow& file) {
        if (file.path.starts_with(beginning)) {
            const std::size_t slash = std::min(file.path.find('/', beginning.size()), file.path.size() - 1);
            const std::string_view path = file.path.substr(0, slash + 1);
            if (paths.empty() || paths.back() != path) {
                paths.emplace_back(path);
            }
        }
    });
    return paths;
}

}  // namespace host
