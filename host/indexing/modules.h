// Resolves names across modules: follows imports and re-exports through the sources of a repository.
#pragma once

#include "host/indexing/symbols.h"
#include "host/sources/source_reader.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::indexing {

/// Returns whether the file at `path` is a Python source.
bool is_python(std::string_view path);

/// A file that others can import.
struct Module {
    std::string_view path;
    SymbolNumber symbol = 0;  ///< the symbol of the file as a module
    /// The package release whose modules can import it by its name. For Python only.
    std::string_view release;
    std::string name;  ///< the name in Python: "a.b"; empty for other languages
};

/// Returns the symbols that a module declares at its top level, with their names, in order of definition.
using NamesAtTop = std::function<std::vector<std::pair<std::string, SymbolNumber>>(const Module& module)>;

/// What a name means: all symbols of one declaration, or the symbol of a module. Ascending; empty when unknown.
using Meaning = std::vector<SymbolNumber>;

/// Resolves the names of modules: those that a module declares, imports and re-exports. A name that a file may have
/// from several places is unknown. Each answer is computed once and kept.
class Modules {
  public:
    /// Of several modules with one path, the first counts. `sources`, and what `modules` and `names_at_top` refer to,
    /// must outlive this object.
    Modules(std::vector<Module> modules, NamesAtTop names_at_top, const sources::Sources& sources);

    /// Returns what a name means that the module exports.
    Meaning exported(SymbolNumber module, const std::string& name);

    /// Returns what a name means that the file at `path` imports or re-exports.
    Meaning imported(std::string_view path, const std::string& name);

    /// Returns what a name means inside the file at `path`: what it declares at its top level, or imports.
    Meaning meant(std::string_view path, const std::string& name) { return follow(path, name, View::INSIDE, 0); }

    /// Returns what a link of the file at `path` leads to.
    Meaning followed(std::string_view path, const sources::Link& link);

    /// Returns the file of the module that the file at `path` imports as `module`; none when it is not in the index.
    std::optional<std::string_view> file_of(std::string_view path, const std::string& module);

    /// Returns the symbol of a file as a module; none for a file that is not a module.
    [[nodiscard]] std::optional<SymbolNumber> module_at(std::string_view path) const;

    /// Returns whether the symbol is that of a module of the index.
    [[nodiscard]] bool is_module(SymbolNumber symbol) const { return files_.contains(symbol); }

    /// Returns the files that the file at `path` imports from, and those from which these re-export. Valid as long as
    /// this object.
    const std::set<std::string_view>& reached_from(std::string_view path);

    /// Returns the links of a file; none for a file without an outline.
    [[nodiscard]] std::span<const sources::Link> links_of(std::string_view path) const;

  private:
    enum class View { INSIDE, OUTSIDE };  // all names of a file, or only those that it exports

    [[nodiscard]] const sources::Outline* outline_of(std::string_view path) const;
    [[nodiscard]] bool exports(std::string_view path, const std::string& name) const;
    [[nodiscard]] bool passes_on_through_star(std::string_view path, const std::string& name) const;
    std::optional<std::string_view> file_of_python_module(std::string_view path, std::string_view module) const;
    std::set<std::string_view> reach(std::string_view path);
    const Meaning& declared(std::string_view path, const std::string& name);
    Meaning follow(std::string_view path, const std::string& name, View view, std::size_t steps);
    Meaning follow(std::string_view path, const sources::Link& link, std::size_t steps);
    Meaning follow_all(std::string_view path, const std::string& name, View view, std::size_t steps);
    Meaning follow_stars(std::string_view path, const std::string& name, std::size_t steps);

    const std::vector<Module> all_;
    const NamesAtTop names_at_top_;
    const sources::Sources& sources_;
    std::map<std::string_view, const Module*> modules_;  // by path
    std::unordered_map<SymbolNumber, std::string_view> files_;
    std::map<std::pair<std::string_view, std::string>, std::string_view> python_modules_;  // by release and name
    std::map<std::pair<std::string_view, std::string>, std::optional<std::string_view>> files_of_modules_;
    std::map<std::string_view, std::unordered_map<std::string, Meaning>> declared_;  // by path, then name
    std::map<std::tuple<std::string_view, std::string, View>, Meaning> known_;       // by path and name
    std::map<std::string_view, std::set<std::string_view>> reached_;                 // by path
};

}  // namespace host::indexing
