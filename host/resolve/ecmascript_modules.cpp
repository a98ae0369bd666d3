// Modules of JavaScript and TypeScript: files.
#include "host/files/file_language.h"
#include "host/resolve/module_rules.h"
#include "host/resolve/paths.h"
#include "host/resolve/unwritten_names.h"
#include "host/syntax/global_namespace.h"

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <unordered_map>

namespace host::resolve {

namespace {

// What declares a module whose own extension says of which kind it is; looked for last.
constexpr std::array<std::string_view, 2> RARE{"d.mts", "d.cts"};

class EcmascriptModules : public ModuleRules {
  public:
    explicit EcmascriptModules(Catalog& catalog)
        : catalog_(catalog), files_(catalog.repository()), globals_(catalog.module("ecmascript:")) {
        for (FileId file = 0; file < catalog.files(); ++file) {
            const std::string_view language = catalog.file(file).language;
            if (language == "typescript" || language == "tsx" || language == "javascript") {
                catalog.set_module(
                    file, declares_globals(file) ? globals_ : catalog.module("ecmascript:" + catalog.file(file).path));
                set_globals(catalog, file);
            }
        }
        for (const Package& package : catalog.repository().packages) {
            if (package.language == "javascript") {
                packages_.push_back(&package);
            }
        }
        std::ranges::sort(packages_, std::ranges::greater(), &Package::folder);
    }

    [[nodiscard]] Found find(FileId from, const syntax::Import& import) const override {
        const std::string_view module = catalog_.syntax(from).name(import.module);
        const std::string_view folder = folder_of(catalog_.file(from).path);
        const bool is_relative =
            module.starts_with("./") || module.starts_with("../") || module == "." || module == "..";
        if (is_relative) {
            return found(file_or_package_at(joined(folder, module)), import);
        }
        if (const std::optional<FileId> file = aliased(folder, module)) {
            return found(file, import);
        }
        const Package* const package = package_named(folder, module);
        return package == nullptr ? Found{.is_foreign = true}
                                  : found(file_of_package(*package, module.substr(package->name.size())), import);
    }

    [[nodiscard]] std::string_view whole() const override { return WHOLE_MODULE; }

    [[nodiscard]] Container globals() const override { return globals_; }

    // Declarations for a package are of no use elsewhere.
    [[nodiscard]] bool sees(FileId from, FileId of) const override {
        return from == of || is_below(catalog_.file(from).path, scope_of(catalog_.file(of).path));
    }

  private:
    // Has what a file declares for all files be with the other globals.
    void set_globals(Catalog& catalog, FileId file) const {
        const syntax::Syntax& syntax = catalog.syntax(file);
        for (syntax::DeclarationId id = 0; id < syntax.declarations.size(); ++id) {
            const syntax::Declaration& declaration = syntax.declarations[id];
            if (declaration.kind == syntax::Kind::NAMESPACE && declaration.is_hidden &&
                syntax.name(declaration.name) == syntax::GLOBAL_NAMESPACE) {
                catalog.set_container(catalog.symbol(file, id), globals_);
            }
        }
    }

    // A module that is one value stands for that, where it is imported as a whole.
    [[nodiscard]] Found found(std::optional<FileId> file, const syntax::Import& import) const {
        if (!file) {
            return {};
        }
        const Container module = catalog_.module_of(*file);
        const Name whole = catalog_.name(WHOLE_MODULE);
        const bool is_value = import.original == 0 && whole != NONE &&
                              (!catalog_.members(module, whole).empty() || !catalog_.imports(module, whole).empty());
        return {.modules = {module},
                .path = is_value ? std::vector{std::string(WHOLE_MODULE)} : std::vector<std::string>()};
    }

    // A file of declarations that is no module declares what all files see.
    [[nodiscard]] bool declares_globals(FileId file) const {
        const syntax::Syntax& syntax = catalog_.syntax(file);
        const auto is_exported = [](const syntax::Declaration& declaration) {
            return declaration.parent == syntax::NO_DECLARATION && !declaration.is_private;
        };
        return catalog_.file(file).path.ends_with(".d.ts") && syntax.imports.empty() &&
               std::ranges::none_of(syntax.declarations, is_exported);
    }

    static bool is_below(std::string_view path, std::string_view folder) {
        return folder.empty() || path == folder || (path.starts_with(folder) && path[folder.size()] == '/');
    }

    // The folder of the innermost package around a file.
    [[nodiscard]] std::string_view scope_of(std::string_view path) const {
        std::string_view scope;
        for (const Package* const package : packages_) {
            const bool is_closer = package->folder.size() > scope.size();
            scope = is_closer && is_below(path, package->folder) ? std::string_view(package->folder) : scope;
        }
        return scope;
    }

    // The package by whose name a module is imported from a folder; null for a foreign one.
    [[nodiscard]] const Package* package_named(std::string_view folder, std::string_view module) const {
        const Package* best = nullptr;
        for (const Package* const package : packages_) {
            const bool is_it =
                !package->name.empty() && is_below(module, package->name) && is_below(folder, package->visible_below);
            if (is_it && (best == nullptr || package->name.size() > best->name.size())) {
                best = package;
            }
        }
        return best;
    }

    // The source that a relative path stands for: of a folder with a manifest what that states, rather than its index.
    [[nodiscard]] std::optional<FileId> file_or_package_at(const std::optional<std::string>& path) const {
        const std::optional<FileId> file = file_at(path);
        if (!path || (file && !is_below(catalog_.file(*file).path, *path))) {
            return file;
        }
        const auto package = std::ranges::lower_bound(packages_, *path, std::ranges::greater(), &Package::folder);
        const bool is_package = package != packages_.end() && (*package)->folder == *path;
        const std::optional<FileId> stated = is_package ? file_of_package(**package, "") : std::nullopt;
        return stated ? stated : file;
    }

    // The source that a path without an extension, with that of what is made of it, or of a folder, stands for.
    [[nodiscard]] std::optional<FileId> file_at(const std::optional<std::string>& path) const {
        if (!path) {
            return std::nullopt;
        }
        if (const std::optional<FileId> file = module_file(*path)) {
            return file;
        }
        static const std::vector<std::string_view> extensions = [] {
            std::vector<std::string_view> all = module_extensions();
            all.insert(all.end(), RARE.begin(), RARE.end());
            return all;
        }();
        for (const std::string_view extension : extensions) {
            if (const std::optional<FileId> file = module_file(*path + "." + std::string(extension))) {
                return file;
            }
        }
        if (usual_language(*path) == "javascript") {  // what a compiler writes has the name of what it reads
            return file_at(path->substr(0, path->rfind('.')));
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

    // Of patterns that match a name, the one that says most of it: itself, else with the longest text before its "*".
    template <class Patterns>
    static auto best_match(const Patterns& patterns, std::string_view name) {
        const auto exact = patterns.find(std::string(name));
        if (exact != patterns.end()) {
            return exact;
        }
        auto best = patterns.end();
        // NOLINTNEXTLINE(modernize-loop-convert): the iterator is the result
        for (auto each = patterns.begin(); each != patterns.end(); ++each) {
            const bool is_longer = best == patterns.end() || each->first.find('*') > best->first.find('*');
            best = is_longer && matched(each->first, each->first, name) ? each : best;
        }
        return best;
    }

    // By the innermost configuration that has an alias or a folder for the name.
    [[nodiscard]] std::optional<FileId> aliased(std::string_view folder, std::string_view module) const {
        for (const Package* const package : packages_) {
            const Package& around = *package;
            if (!is_below(folder, around.folder)) {
                continue;
            }
            if (const auto alias = best_match(around.aliases, module); alias != around.aliases.end()) {
                for (const std::string& target : alias->second) {
                    const std::string path = matched(alias->first, target, module).value();
                    if (const std::optional<FileId> file = file_at(joined(around.folder, path))) {
                        return file;
                    }
                }
            }
            for (const std::string& root : around.roots) {
                if (const std::optional<FileId> file =
                        file_at(joined(around.folder, root + "/" + std::string(module)))) {
                    return file;
                }
            }
        }
        return std::nullopt;
    }

    // The file of a package of the repository that is imported by its name and `rest`: "" or "/sub/path".
    [[nodiscard]] std::optional<FileId> file_of_package(const Package& package, std::string_view rest) const {
        const std::string subpath = "." + std::string(rest);
        if (const auto target = best_match(package.exports, subpath); target != package.exports.end()) {
            const std::string path = matched(target->first, target->second, subpath).value();
            if (const std::optional<FileId> file = file_at(joined(package.folder, path))) {
                return file;
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
    Container globals_;
    std::vector<const Package*> packages_;  // by folder, the inner ones before those around them
};

}  // namespace

std::unique_ptr<ModuleRules> ecmascript_modules(Catalog& catalog) {
    return std::make_unique<EcmascriptModules>(catalog);
}

}  // namespace host::resolve
