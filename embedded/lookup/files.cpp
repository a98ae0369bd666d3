#include "embedded/lookup/files.h"

#include "utils/path_filter.h"

#include <string_view>
#include <unordered_set>

namespace embedded {

std::vector<ListedFile> list_files(const Connection& index, std::span<const std::string> paths) {
    const std::unordered_set<std::string_view> wanted(paths.begin(), paths.end());
    Statement rows(index, "SELECT path, language, declarations, declared_lines FROM files ORDER BY path");
    std::vector<ListedFile> files;
    files.reserve(wanted.size());
    while (rows.step()) {
        if (wanted.contains(rows.text(0))) {
            files.push_back({.path = std::string(rows.text(0)),
                             .language = std::string(rows.text(1)),
                             .declarations = rows.integer(2),
                             .declared_lines = rows.integer(3),
                             .is_test = utils::is_test_path(rows.text(0))});
        }
    }
    return files;
}

}  // namespace embedded
