// Modules of Python: a file, or a folder with or without an __init__.py.
#include "host/resolve/module_rules.h"
#include "host/resolve/paths.h"

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>

namespace host::resolve {

namespace {

constexpr std::string_view PACKAGE_FILE = "__init__.py";

class PythonModules : public ModuleRules {
  public:
    explicit PythonModules(Catalog& catalog) : catalog_(catalog), files_(catalog.repository()) {
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (catalog.file(file).language == "python") {
                const std::string& path = catalog.file(file).path;
                catalog.set_module(file,
                                   module_at(file_name(path) == PACKAGE_FILE ? std::string(folder_of(path)) : path));
                add_folders(folder_of(path));
            }
        }
        for (const auto& [path, module] : modules_) {
            if (const auto stub = modules_.find(path + "i"); stub != modules_.end()) {
                stubs_.emplace(module, stub->second);
            }
        }
        roots_.insert({"", "src"});
        for (const Package& package : catalog.repository().packages) {
            if (package.language == "python") {
                roots_.insert(package.folder);
                for (const std::string& root : package.roots) {
                    roots_.insert(joined(package.folder, root).value_or(""));
                }
            }
        }
    }

    [[nodiscard]] Found find(FileId from, const syntax::Import& import) const override {
        std::string_view module = catalog_.syntax(from).name(import.module);
        const std::string_view folder = folder_of(catalog_.file(from).path);
        const std::size_t dots = std::min(module.find_first_not_of('.'), module.size());
        std::string_view rest = module.substr(dots);
        if (dots > 0) {
            std::string_view base = folder;
            for (std::size_t up = 1; up < dots; ++up) {
                if (base.empty()) {
                    return {.is_foreign = true};  // outside of the repository
                }
                base = folder_of(base);
            }
            const Container found = below(base, rest);
            return {.modules = found == NONE ? std::vector<Container>() : std::vector{found}};
        }
        if (const Container found = below(root_of(folder), rest); found != NONE) {
            return {.modules = {found}};
        }
        std::set<Container> found;
        for (const std::string& root : roots_) {
            if (const Container container = below(root, rest); container != NONE) {
                found.insert(container);
            }
        }
        const bool is_foreign = found.empty() && std::ranges::none_of(roots_, [&](const std::string& root) {
                                    return below(root, rest.substr(0, rest.find('.'))) != NONE;
                                });
        return {.is_foreign = is_foreign, .modules = {found.begin(), found.end()}};
    }

    [[nodiscard]] Container submodule(Container module, std::string_view name) const override {
        const auto folder = folders_of_modules_.find(module);
        return folder == folders_of_modules_.end() ? NONE : below(folder->second, name);
    }

    [[nodiscard]] Container stub_of(Container module) const override {
        const auto stub = stubs_.find(module);
        return stub == stubs_.end() ? NONE : stub->second;
    }

  private:
    // The module of a file, or of a folder, by its path.
    Container module_at(const std::string& path) {
        const Container module = catalog_.module("python:" + path);
        modules_.emplace(path, module);
        return module;
    }

    // Every folder that holds modules is one itself.
    void add_folders(std::string_view folder) {
        while (!folder.empty() && folders_.insert(std::string(folder)).second) {
            folders_of_modules_.emplace(module_at(std::string(folder)), folder);
            folder = folder_of(folder);
        }
    }

    // The module that is called `name`, with dots, as seen from a folder; the folder itself without a name.
    [[nodiscard]] Container below(std::string_view folder, std::string_view name) const {
        std::string path(folder);
        while (!name.empty()) {
            const std::size_t dot = name.find('.');
            path.append(path.empty() ? "" : "/").append(name.substr(0, dot));
            name = dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
        }
        const bool is_package = files_.find(path + "/" + std::string(PACKAGE_FILE)).has_value();
        if (const auto file = modules_.find(path + ".py"); !is_package && file != modules_.end()) {
            return file->second;
        }
        const auto found = modules_.find(path);
        return found == modules_.end() ? NONE : found->second;
    }

    // The folder from which the modules of a package are imported: the innermost around it that is no package.
    [[nodiscard]] std::string_view root_of(std::string_view folder) const {
        while (!folder.empty() && files_.find(std::string(folder) + "/" + std::string(PACKAGE_FILE))) {
            folder = folder_of(folder);
        }
        return folder;
    }

    Catalog& catalog_;
    FilesByPath files_;
    std::set<std::string> roots_;                         // folders that modules are imported from
    std::set<std::string> folders_;                       // that hold modules
    std::unordered_map<std::string, Container> modules_;  // by path of the file or folder
    std::unordered_map<Container, std::string> folders_of_modules_;
    std::unordered_map<Container, Container> stubs_;  // `m.pyi` of `m.py`
};

}  // namespace

std::unique_ptr<ModuleRules> python_modules(Catalog& catalog) {
    return std::make_unique<PythonModules>(catalog);
}

}  // namespace host::resolve
