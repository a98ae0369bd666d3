#include "host/resolve/paths.h"

#include <vector>

namespace host::resolve {

std::string_view folder_of(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

std::string_view file_name(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string_view stem(std::string_view path) {
    const std::string_view name = file_name(path);
    return name.substr(0, name.rfind('.'));
}

std::optional<std::string> joined(std::string_view folder, std::string_view path) {
    std::vector<std::string_view> segments;
    for (std::string_view rest : {folder, path}) {
        while (!rest.empty()) {
            const std::size_t slash = rest.find('/');
            const std::string_view segment = rest.substr(0, slash);
            rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
            if (segment == "..") {
                if (segments.empty()) {
                    return std::nullopt;
                }
                segments.pop_back();
            } else if (!segment.empty() && segment != ".") {
                segments.push_back(segment);
            }
        }
    }
    std::string text;
    for (const std::string_view segment : segments) {
        text.append(text.empty() ? "" : "/").append(segment);
    }
    return text;
}

FilesByPath::FilesByPath(const Repository& repository) {
    for (FileId file = 0; file < repository.files.size(); ++file) {
        const std::string_view path = repository.files[file].path;
        files_.emplace(path, file);
        for (std::string_view folder = folder_of(path); folders_.insert(folder).second;) {
            folder = folder_of(folder);
        }
    }
}

std::optional<FileId> FilesByPath::find(std::string_view path) const {
    const auto found = files_.find(path);
    return found == files_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace host::resolve
