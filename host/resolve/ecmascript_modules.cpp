// Modules of JavaScript and TypeScript: files.
#include "host/resolve/module_rules.h"
#include "host/resolve/paths.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <unordered_map>

namespace host::resolve {

namespace {

constexpr std::array<std::string_view, 11> EXTENSIONS{".ts",  ".tsx", ".d.ts", ".js",    ".jsx",  ".mts",
                                                      ".cts", ".mjs", ".cjs",  ".d.mts", ".d.cts"};
// What a compiler writes for what it reads.
constexpr std::array<std::string_view, 4> WRITTEN{".js", ".jsx", ".mjs", ".cjs"};

class EcmascriptModules : public ModuleRules {
  public:
    explicit EcmascriptModules(Catalog& catalog) : catalog_(catalog), files_(catalog.repository()) {
        for (FileId file = 0; file < catalog.files(); ++file) {
            const std::string_view language = catalog.file(file).language;
            if (language == "typescript" || language == "tsx" || language == "javascript") {
                catalog.set_module(file, catalog.module("ecmascript:" + catalog.file(file).path));
            }
        }
        for (const Package& package : catalog.repository().packages) {
            if (package.language == "javascript") {
                packages_.push_back(&package);
            }
        }
        std::ranges::sort(packages_, {}, &Package::folder);
    }

    [[nodiscard]] Found find(FileId from, const syntax::Import& import) const override {
        const std::string_view module = catalog_.syntax(from).name(import.module);
        const std::string_view folder = folder_of(catalog_.file(from).path);
        const bool is_relative =
            module.starts_with("./") || module.starts_with("../") || module == "." || module == "..";
        if (is_relative) {
            return found(file_at(joined(folder, module)));
        }
        if (const std::optional<FileId> file = aliased(folder, module)) {
            return found(file);
        }
        for (const Package* const package : packages_) {
            const std::string_view name = package->name;
            const bool is_it = !name.empty() && module.starts_with(name) &&
                               (module.size() == name.size() || module[name.size()] == '/');
            if (is_it) {
                return found(file_of_package(*package, module.substr(name.size())));
            }
        }
        return {.is_foreign = true};
    }

  private:
    [[nodiscard]] Found found(std::optional<FileId> file) const {
        return {.modules = file ? std::vector{catalog_.module_of(*file)} : std::vector<Container>()};
    }

    // The source that a path without an extension, with that of what is made of it, or of a folder, stands for.
    [[nodiscard]] std::optional<FileId> file_at(const std::optional<std::string>& path) const {
        if (!path) {
            return std::nullopt;
        }
        if (const std::optional<FileId> file = module_file(*path)) {
            return file;
        }
        for (const std::string_view extension : EXTENSIONS) {
            if (const std::optional<FileId> file = module_file(*path + std::string(extension))) {
                return file;
            }
        }
        for (const std::string_view extension : WRITTEN) {
            if (path->ends_with(extension)) {
                return file_at(path->substr(0, path->size() - extension.size()));
            }
        }
        return path->ends_with("/index") ? std::nullopt : file_at((path->empty() ? "" : *path + "/") + "index");
    }

    [[nodiscard]] std::optional<FileId> module_file(const std::string& path) const {
        const std::optional<FileId> file = files_.find(path);
        return file && catalog_.module_of(*file) != NONE ? file : std::nullopt;
    }

    // The file that `name` stands for where one "*" of the pattern may stand for any text.
    static std::optional<std::string> matched(std::string_view pattern, std::string_view target,
                                              std::string_view name) {
        const std::size_t star = pattern.find('*');
        if (star == std::string_view::npos) {
            return pattern == name ? std::optional<std::string>(target) : std::nullopt;
        }
        const std::string_view before = pattern.substr(0, star);
        const std::string_view after = pattern.substr(star + 1);
        if (name.size() < before.size() + after.size() || !name.starts_with(before) || !name.ends_with(after)) {
            return std::nullopt;
        }
        const std::string_view middle = name.substr(before.size(), name.size() - before.size() - after.size());
        std::string path(target.substr(0, target.find('*')));
        return target.find('*') == std::string_view::npos
                   ? path
                   : path.append(middle).append(target.substr(target.find('*') + 1));
    }

    // By the innermost configuration that has an alias or a folder for the name.
    [[nodiscard]] std::optional<FileId> aliased(std::string_view folder, std::string_view module) const {
        for (auto package = packages_.rbegin(); package != packages_.rend(); ++package) {
            const std::string& base = (*package)->folder;
            const bool is_around = base.empty() || folder == base || folder.starts_with(base + "/");
            if (!is_around) {
                continue;
            }
            for (const auto& [pattern, targets] : (*package)->aliases) {
                for (const std::string& target : targets) {
                    if (const std::optional<std::string> path = matched(pattern, target, module)) {
                        if (const std::optional<FileId> file = file_at(joined(base, *path))) {
                            return file;
                        }
                    }
                }
            }
            for (const std::string& root : (*package)->roots) {
                if (const std::optional<FileId> file = file_at(joined(base, root + "/" + std::string(module)))) {
                    return file;
                }
            }
        }
        return std::nullopt;
    }

    // The file of a package of the repository that is imported by its name and `rest`: "" or "/sub/path".
    [[nodiscard]] std::optional<FileId> file_of_package(const Package& package, std::string_view rest) const {
        const std::string subpath = "." + std::string(rest);
        for (const auto& [pattern, target] : package.exports) {
            if (const std::optional<std::string> path = matched(pattern, target, subpath)) {
                if (const std::optional<FileId> file = file_at(joined(package.folder, *path))) {
                    return file;
                }
            }
        }
        if (!rest.empty()) {
            return file_at(joined(package.folder, rest.substr(1)));
        }
        for (const std::string& entry : {package.entry, std::string("index"), std::string("src/index")}) {
            const std::optional<FileId> file = entry.empty() ? std::nullopt : file_at(joined(package.folder, entry));
            if (file) {
                return file;
            }
        }
        return std::nullopt;
    }

    Catalog& catalog_;
    FilesByPath files_;
    std::vector<const Package*> packages_;  // by folder
};

}  // namespace

std::unique_ptr<ModuleRules> ecmascript_modules(Catalog& catalog) {
    return std::make_unique<EcmascriptModules>(catalog);
}

}  // namespace host::resolve
