// Modules of Rust: files in the tree that `mod` declarations make of them, and inline modules.
#include "host/resolve/module_rules.h"
#include "host/resolve/paths.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>

namespace host::resolve {

namespace {

constexpr std::array<std::string_view, 4> FOREIGN_CRATES{"std", "core", "alloc", "proc_macro"};

class RustModules : public ModuleRules {
  public:
    explicit RustModules(Catalog& catalog) : catalog_(catalog), files_(catalog.repository()) {
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (catalog.file(file).language == "rust") {
                catalog.set_module(file, catalog.module("rust:" + catalog.file(file).path));
            }
        }
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (catalog.file(file).language == "rust") {
                place_modules(file);
            }
        }
        for (const Package& package : catalog.repository().packages) {
            if (package.language == "rust" && !package.name.empty()) {
                const std::string entry = package.entry.empty() ? "src/lib.rs" : package.entry;
                if (const std::optional<FileId> file = files_.find(joined(package.folder, entry).value_or(""))) {
                    std::string name = package.name;
                    std::ranges::replace(name, '-', '_');
                    crates_.emplace(name, catalog.module_of(*file));
                }
            }
        }
    }

    [[nodiscard]] Found find(FileId from, const syntax::Import& import) const override {
        std::vector<std::string> path = segments(catalog_.syntax(from).name(import.module));
        if (path.empty()) {
            return {.modules = {catalog_.module_of(from)}};
        }
        if (path.front() == "crate") {
            return {.modules = {root(from)}, .path = {path.begin() + 1, path.end()}};
        }
        if (path.front() == "self" || path.front() == "super") {
            return relative(from, import.around, path);
        }
        if (std::ranges::find(FOREIGN_CRATES, path.front()) != FOREIGN_CRATES.end()) {
            return {.is_foreign = true};
        }
        const Container own = module_around(from, real_module(from, import.around));
        if (has(own, path.front())) {
            return {.modules = {own}, .path = path};
        }
        if (const Container crate = package(path.front()); crate != NONE) {
            return {.modules = {crate}, .path = {path.begin() + 1, path.end()}};
        }
        // In the first edition of the language, paths of `use` start from the crate.
        if (!is_dependency(from, path.front()) && has(root(from), path.front())) {
            return {.modules = {root(from)}, .path = path};
        }
        return {.is_foreign = true};
    }

    [[nodiscard]] Container package(std::string_view name) const override {
        const auto crate = crates_.find(std::string(name));
        return crate == crates_.end() ? NONE : crate->second;
    }

    [[nodiscard]] Container root(FileId file) const override {
        Container module = catalog_.module_of(file);
        for (auto parent = parents_.find(module); parent != parents_.end(); parent = parents_.find(module)) {
            module = parent->second;
        }
        return module;
    }

    // A block with `use` in it sees all around it, and a module that takes all names of the one around it its imports.
    [[nodiscard]] bool sees_around(Symbol of) const override {
        return catalog_.declaration(of).is_hidden ||
               std::ranges::any_of(catalog_.star_imports(catalog_.container_of(of)), [&](const ImportPlace& place) {
                   const syntax::Syntax& syntax = catalog_.syntax(place.file);
                   return place.file == catalog_.file_of(of) &&
                          syntax.name(syntax.imports[place.import].module) == "super";
               });
    }

  private:
    static std::vector<std::string> segments(std::string_view path) {
        std::vector<std::string> segments;
        while (!path.empty()) {
            const std::size_t end = path.find("::");
            if (end != 0) {
                segments.emplace_back(path.substr(0, end));
            }
            path = end == std::string_view::npos ? std::string_view() : path.substr(end + 2);
        }
        return segments;
    }

    [[nodiscard]] bool has(Container module, const std::string& name) const {
        return !catalog_.members(module, catalog_.name(name)).empty() ||
               !catalog_.imports(module, catalog_.name(name)).empty();
    }

    // Whether a manifest around the file states a dependency of this name.
    [[nodiscard]] bool is_dependency(FileId from, const std::string& name) const {
        const std::string& path = catalog_.file(from).path;
        return std::ranges::any_of(catalog_.repository().packages, [&](const Package& package) {
            std::string written = name;
            std::ranges::replace(written, '_', '-');
            const bool is_around = package.folder.empty() || path.starts_with(package.folder + "/");
            return package.language == "rust" && is_around &&
                   (package.dependencies.contains(name) || package.dependencies.contains(written));
        });
    }

    // Gives each `mod x;` of a file the file that it stands for.
    void place_modules(FileId file) {
        const syntax::Syntax& syntax = catalog_.syntax(file);
        for (syntax::DeclarationId id = 0; id < syntax.declarations.size(); ++id) {
            const syntax::Declaration& declaration = syntax.declarations[id];
            if (declaration.kind == syntax::Kind::NAMESPACE && !declaration.is_definition) {
                const std::string path =
                    folder_of_modules(file, declaration.parent) + "/" + std::string(syntax.name(declaration.name));
                for (const std::string_view end : {".rs", "/mod.rs"}) {
                    if (const std::optional<FileId> child = files_.find(joined("", path + std::string(end)).value())) {
                        catalog_.set_container(catalog_.symbol(file, id), catalog_.module_of(*child));
                        parents_.emplace(catalog_.module_of(*child), catalog_.module_of(file));
                        break;
                    }
                }
            }
        }
    }

    // The folder in which the modules lie that a file, or an inline module in it, declares.
    std::string folder_of_modules(FileId file, syntax::DeclarationId around) const {
        const syntax::Syntax& syntax = catalog_.syntax(file);
        if (around != syntax::NO_DECLARATION) {
            return folder_of_modules(file, syntax.declarations[around].parent) + "/" +
                   std::string(syntax.name(syntax.declarations[around].name));
        }
        const std::string& path = catalog_.file(file).path;
        const std::string_view name = stem(path);
        const bool is_of_its_folder = name == "lib" || name == "main" || name == "mod";
        return std::string(folder_of(path)) + (is_of_its_folder ? "" : "/" + std::string(name));
    }

    // A block with `use` in it is no module.
    [[nodiscard]] syntax::DeclarationId real_module(FileId file, syntax::DeclarationId around) const {
        const syntax::Syntax& syntax = catalog_.syntax(file);
        while (around != syntax::NO_DECLARATION && syntax.declarations[around].is_hidden) {
            around = syntax.declarations[around].parent;
        }
        return around;
    }

    [[nodiscard]] Container module_around(FileId file, syntax::DeclarationId around) const {
        return around == syntax::NO_DECLARATION ? catalog_.module_of(file)
                                                : catalog_.container_of(catalog_.symbol(file, around));
    }

    // From the module around the import, and `super` by `super` outwards.
    Found relative(FileId file, syntax::DeclarationId around, const std::vector<std::string>& path) const {
        around = real_module(file, around);
        Container module = module_around(file, around);
        std::size_t at = path.front() == "self" ? 1 : 0;
        for (; at < path.size() && path[at] == "super"; ++at) {
            if (around != syntax::NO_DECLARATION) {
                around = real_module(file, catalog_.syntax(file).declarations[around].parent);
                module = module_around(file, around);
            } else if (const auto parent = parents_.find(module); parent != parents_.end()) {
                module = parent->second;
            } else {
                return {};
            }
        }
        return {.modules = {module}, .path = {path.begin() + static_cast<std::ptrdiff_t>(at), path.end()}};
    }

    Catalog& catalog_;
    FilesByPath files_;
    std::unordered_map<Container, Container> parents_;  // of modules that are files
    std::unordered_map<std::string, Container> crates_;
};

}  // namespace

std::unique_ptr<ModuleRules> rust_modules(Catalog& catalog) {
    return std::make_unique<RustModules>(catalog);
}

}  // namespace host::resolve
