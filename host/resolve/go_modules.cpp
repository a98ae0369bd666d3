// Packages of Go: all files of a folder with one package clause.
#include "host/resolve/go_build.h"
#include "host/resolve/module_rules.h"
#include "host/resolve/paths.h"

#include <algorithm>
#include <unordered_map>

namespace host::resolve {

namespace {

// The name of a package that only its path is known of: "gopkg.in/yaml.v3", "example.org/a/v2".
std::string_view usual_name(std::string_view path) {
    const auto is_version = [](std::string_view text) {
        return text.size() > 1 && text.front() == 'v' &&
               text.find_first_not_of("0123456789", 1) == std::string_view::npos;
    };
    if (is_version(file_name(path))) {
        path = folder_of(path);
    }
    const std::string_view name = file_name(path);
    const std::size_t dot = name.rfind('.');
    return dot != std::string_view::npos && is_version(name.substr(dot + 1)) ? name.substr(0, dot) : name;
}

class GoModules : public ModuleRules {
  public:
    explicit GoModules(Catalog& catalog) : catalog_(catalog) {
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (catalog.file(file).language == "go") {
                add(file);
            }
        }
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (catalog.file(file).language == "go") {
                name_imports(file);
            }
        }
    }

    [[nodiscard]] Found find(FileId from, const syntax::Import& import) const override {
        return find(from, catalog_.syntax(from).name(import.module));
    }

  private:
    struct PackageOfFolder {
        Container module = NONE;
        std::string_view name;
        bool is_built = false;
    };

    void add(FileId file) {
        const std::string& path = catalog_.file(file).path;
        const syntax::Syntax& syntax = catalog_.syntax(file);
        const std::string_view name = syntax.name(syntax.package);
        const std::string folder(folder_of(path));
        const Container module = catalog_.module("go:" + folder + " " + std::string(name));
        catalog_.set_module(file, module);
        const bool is_built = host::resolve::is_built(path, syntax.name(syntax.constraint));
        if (!is_built) {
            catalog_.leave_out(file);
        }
        PackageOfFolder& package = packages_[folder];
        const bool is_better = package.module == NONE || (is_built && !package.is_built);
        if (is_better && !name.ends_with("_test")) {
            package = {.module = module, .name = name, .is_built = is_built};
        }
    }

    // Without a name of its own, an import has that of its package.
    void name_imports(FileId file) {
        const syntax::Syntax& syntax = catalog_.syntax(file);
        for (std::uint32_t at = 0; at < syntax.imports.size(); ++at) {
            const syntax::Import& import = syntax.imports[at];
            if (import.name == 0 && !import.is_star) {
                const std::string_view path = syntax.name(import.module);
                const auto found = packages_.find(folder_of_package(file, path).value_or("//"));
                const std::string_view name = found == packages_.end() ? usual_name(path) : found->second.name;
                catalog_.set_import_name({file, at}, catalog_.name(name));
            }
        }
    }

    Found find(FileId from, std::string_view path) const {
        const std::optional<std::string> folder = folder_of_package(from, path);
        const auto found = folder ? packages_.find(*folder) : packages_.end();
        const Container module = found == packages_.end() ? NONE : found->second.module;
        return {.is_foreign = !folder, .modules = module == NONE ? std::vector<Container>() : std::vector{module}};
    }

    // The folder of an import path: below the module of the longest name that it begins with, or a vendored copy.
    std::optional<std::string> folder_of_package(FileId from, std::string_view path) const {
        const Package* best = nullptr;
        for (const Package& package : catalog_.repository().packages) {
            const std::string_view name = package.name;
            const bool is_it = package.language == "go" && !name.empty() && path.starts_with(name) &&
                               (path.size() == name.size() || path[name.size()] == '/');
            if (is_it && (best == nullptr || name.size() > best->name.size())) {
                best = &package;
            }
        }
        for (std::string_view folder = folder_of(catalog_.file(from).path);; folder = folder_of(folder)) {
            std::string vendored = std::string(folder) + (folder.empty() ? "" : "/") + "vendor/" + std::string(path);
            if (packages_.contains(vendored)) {
                return vendored;
            }
            if (folder.empty()) {
                break;
            }
        }
        return best == nullptr ? std::nullopt : joined(best->folder, path.substr(best->name.size()));
    }

    Catalog& catalog_;
    std::unordered_map<std::string, PackageOfFolder> packages_;  // by folder
};

}  // namespace

std::unique_ptr<ModuleRules> go_modules(Catalog& catalog) {
    return std::make_unique<GoModules>(catalog);
}

}  // namespace host::resolve
