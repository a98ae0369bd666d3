#include "host/manifests/manifests.h"

#include "host/manifests/manifest_readers.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

namespace host::manifests {

namespace {

struct Form {
    std::string_view file;
    std::string_view language;
    void (*read)(const ManifestFiles& files, std::string_view path, resolve::Package& package);
};

// What is read first is not overwritten by what follows.
constexpr std::array<Form, 9> FORMS{{{"package.json", "javascript", read_package_json},
                                     {"tsconfig.json", "javascript", read_tsconfig},
                                     {"jsconfig.json", "javascript", read_tsconfig},
                                     {"pyproject.toml", "python", read_pyproject},
                                     {"setup.cfg", "python", read_setup_cfg},
                                     {"setup.py", "python", read_setup_py},
                                     {"go.mod", "go", read_go_mod},
                                     {"Cargo.toml", "rust", read_cargo},
                                     {"pom.xml", "java", read_pom}}};

}  // namespace

std::vector<resolve::Package> packages_of(const Checkout& checkout, std::span<const std::string> paths) {
    const ManifestFiles files(checkout, paths);
    std::map<std::pair<std::string_view, std::string_view>, resolve::Package> found;
    for (const Form& form : FORMS) {
        for (const std::string_view path : files.paths()) {
            const std::string_view folder = folder_of(path);
            if (path.substr(folder.empty() ? 0 : folder.size() + 1) == form.file) {
                resolve::Package& package = found[{folder, form.language}];
                package.folder = folder;
                package.visible_below = folder;
                package.language = form.language;
                form.read(files, path, package);
            }
        }
    }
    std::vector<resolve::Package> packages;
    packages.reserve(found.size());
    for (auto& [key, package] : found) {
        packages.push_back(std::move(package));
    }
    read_npm_workspaces(files, packages);
    return packages;
}

}  // namespace host::manifests
