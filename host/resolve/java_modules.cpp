// Packages of Java: all files with one package clause, in whatever folder.
#include "host/resolve/module_rules.h"

namespace host::resolve {

namespace {

class JavaModules : public ModuleRules {
  public:
    explicit JavaModules(Catalog& catalog) : catalog_(catalog) {
        for (FileId file = 0; file < catalog.files(); ++file) {
            if (catalog.file(file).language == "java") {
                const syntax::Syntax& syntax = catalog.syntax(file);
                catalog.set_module(file, catalog.module("java:" + std::string(syntax.name(syntax.package))));
            }
        }
    }

    // The longest part of the name that is a package, and from there the types in one another.
    [[nodiscard]] Found find(FileId from, const syntax::Import& import) const override {
        const std::string_view whole = catalog_.syntax(from).name(import.module);
        std::string package(whole);
        std::vector<std::string> path;
        while (true) {
            if (const Container module = catalog_.find_module("java:" + package); module != NONE) {
                return {.modules = {module}, .path = {path.rbegin(), path.rend()}};
            }
            const std::size_t dot = package.rfind('.');
            if (dot == std::string::npos) {
                return {.is_foreign = true};
            }
            path.push_back(package.substr(dot + 1));
            package.resize(dot);
        }
    }

  private:
    Catalog& catalog_;
};

}  // namespace

std::unique_ptr<ModuleRules> java_modules(Catalog& catalog) {
    return std::make_unique<JavaModules>(catalog);
}

}  // namespace host::resolve
