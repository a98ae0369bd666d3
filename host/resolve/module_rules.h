// How the modules of a language find one another.
#pragma once

#include "host/resolve/catalog.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host::resolve {

/// What an import leads to.
struct Found {
    bool is_foreign = false;              ///< to another package or the language's library
    std::vector<Container> modules = {};  ///< to one of these; none when nothing in the repository has that name
    std::vector<std::string> path = {};   ///< and from there to a member of it, and so on
};

class ModuleRules {
  public:
    ModuleRules() = default;
    virtual ~ModuleRules() = default;
    ModuleRules(const ModuleRules&) = delete;
    ModuleRules& operator=(const ModuleRules&) = delete;

    /// Returns where the import leads that stands in the file. Its `original` is not looked up.
    [[nodiscard]] virtual Found find(FileId from, const syntax::Import& import) const = 0;

    /// Returns the module of a name in a module, where that is no declaration: a file in a folder. NONE for none.
    [[nodiscard]] virtual Container submodule(Container /*module*/, std::string_view /*name*/) const { return NONE; }

    /// Returns the name under which a module exports what it is as a whole, of which it has the members, too; empty where
    /// no module does.
    [[nodiscard]] virtual std::string_view whole() const { return {}; }

    /// Returns the module of a package that paths in a file may begin with, where nothing else has its name. NONE for
    /// none.
    [[nodiscard]] virtual Container package(std::string_view /*name*/) const { return NONE; }

    /// Returns the container that GLOBAL names of a file are looked up in; NONE where there are none.
    [[nodiscard]] virtual Container root(FileId /*file*/) const { return NONE; }

    /// Returns the container whose names every file sees, where nothing else has them; NONE where there is none.
    [[nodiscard]] virtual Container globals() const { return NONE; }

    /// Returns whether the names at the top of file `of`, of the same module or of `globals`, are visible in the file
    /// `from`.
    [[nodiscard]] virtual bool sees(FileId /*from*/, FileId /*of*/) const { return true; }

    /// Returns whether the file `from` sees those names only in what no build takes.
    [[nodiscard]] virtual bool sees_only_elsewhere(FileId /*from*/, FileId /*of*/) const { return false; }

    /// Returns whether all files that include the file `from` see the names at the top of `of`, so that it has them,
    /// too.
    [[nodiscard]] virtual bool sees_where_included(FileId /*from*/, FileId /*of*/) const { return false; }

    /// Returns the module whose declarations state the types of those of this one, a stub; NONE where there is none.
    [[nodiscard]] virtual Container stub_of(Container /*module*/) const { return NONE; }

    /// Returns whether another file includes this one, so that names of both are looked up there together.
    [[nodiscard]] virtual bool is_included(FileId /*file*/) const { return false; }

    /// Returns whether what stands in a namespace sees the names around that.
    [[nodiscard]] virtual bool sees_around(Symbol /*of*/) const { return true; }

    /// Returns whether bindings of the file could not all be followed, so that a name may come from anywhere.
    [[nodiscard]] virtual bool is_open(FileId /*file*/) const { return false; }
};

// The rules of each language. Each sets the modules of its files in the catalog, which it keeps a reference to, and has
// the catalog leave out the files that no build for this system takes. The catalog must be linked before other files
// are looked for.

std::unique_ptr<ModuleRules> c_modules(Catalog& catalog);
std::unique_ptr<ModuleRules> ecmascript_modules(Catalog& catalog);
std::unique_ptr<ModuleRules> go_modules(Catalog& catalog);
std::unique_ptr<ModuleRules> java_modules(Catalog& catalog);
std::unique_ptr<ModuleRules> python_modules(Catalog& catalog);
std::unique_ptr<ModuleRules> rust_modules(Catalog& catalog);

}  // namespace host::resolve
