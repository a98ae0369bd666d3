#include "host/worktree/module_names.h"

#include "host/files/file_language.h"
#include "host/resolve/paths.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace host::worktree {

namespace {

using resolve::File;
using resolve::folder_of;
using resolve::Package;
using resolve::Repository;
using std::string_view;

std::string dotted(string_view path) {
    std::string name(path);
    std::ranges::replace(name, '/', '.');
    return name;
}

// "a/b.py" -> "a/b", "a/__init__.py" -> "a"
std::string without_end(string_view path) {
    const string_view folder = folder_of(path);
    if (stands_for_folder(path)) {
        return std::string(folder);
    }
    return std::string(folder).append(folder.empty() ? "" : "/").append(stem_of(path));
}

// The part of a path below another folder of it, "" for the path itself.
string_view below(string_view path, string_view folder) {
    return folder.empty() ? path : path.substr(std::min(folder.size() + 1, path.size()));
}

class ModuleNames {
  public:
    explicit ModuleNames(const Repository& repository) : repository_(repository) {
        for (const File& file : repository.files) {
            if (file.language == "python" && stands_for_folder(file.path)) {
                python_packages_.insert(folder_of(file.path));
            }
        }
    }

    [[nodiscard]] std::string name_of(const File& file) const {
        if (file.language == "python") {
            return of_python(file.path);
        }
        if (file.language == "go") {
            return of_go(file.path);
        }
        if (file.language == "java") {
            return file.syntax == nullptr ? std::string() : std::string(file.syntax->name(file.syntax->package));
        }
        if (file.language == "rust") {
            return of_rust(file.path);
        }
        return file.language == "c" || file.language == "cpp" ? std::string() : dotted(file.path);
    }

  private:
    [[nodiscard]] std::string of_python(string_view path) const {
        string_view outside = folder_of(path);
        while (python_packages_.contains(outside)) {
            outside = folder_of(outside);
        }
        return dotted(below(without_end(path), outside));
    }

    [[nodiscard]] std::string of_go(string_view path) const {
        const string_view folder = folder_of(path);
        const Package* nearest = nullptr;
        for (const Package& package : repository_.packages) {
            const bool is_around =
                package.folder.empty() || folder == package.folder || folder.starts_with(package.folder + "/");
            if (package.language == "go" && is_around &&
                (nearest == nullptr || package.folder.size() > nearest->folder.size())) {
                nearest = &package;
            }
        }
        if (nearest == nullptr) {
            return std::string(folder);
        }
        const string_view rest = below(folder, nearest->folder);
        return nearest->name + (nearest->name.empty() || rest.empty() ? "" : "/") + std::string(rest);
    }

    [[nodiscard]] static std::string of_rust(string_view path) {
        constexpr string_view SOURCES = "src/";
        const std::size_t at = path.starts_with(SOURCES) ? 0 : path.find("/src/");
        const string_view inner = at == string_view::npos ? path : path.substr(at + SOURCES.size() + (at == 0 ? 0 : 1));
        const string_view stem = stem_of(inner);
        const string_view folder = folder_of(inner);
        const bool is_folder = stem == "mod" || stem == "lib" || stem == "main";
        return dotted(is_folder ? std::string(folder) : without_end(inner));
    }

    const Repository& repository_;
    std::set<string_view> python_packages_;  // folders
};

}  // namespace

std::vector<std::string> module_names(const Repository& repository) {
    const ModuleNames names(repository);
    std::vector<std::string> all;
    all.reserve(repository.files.size());
    for (const File& file : repository.files) {
        all.push_back(names.name_of(file));
    }
    return all;
}

}  // namespace host::worktree
