// What the modules of a repository pass on to one another, followed through their sources.
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

/// Whether the file at `path` is a source of Python.
bool is_python(std::string_view path);

/// A file that others can import.
struct Module {
    std::string_view path;
    SymbolNumber symbol = 0;  ///< stands for the file
    /// What may import it by its name: the release of a package; only asked of Python.
    std::string_view release;
    std::string name;  ///< as Python has it: "a.b"; empty for other languages
};

/// The symbols that a module declares at its top, by their names, in the order of their definition.
using NamesAtTop = std::function<std::vector<std::pair<std::string, SymbolNumber>>(const Module& module)>;

/// What a name stands for: all symbols of one declaration, or that of a module; ascending, empty when nobody knows.
using Meaning = std::vector<SymbolNumber>;

/// Knows what the names of modules stand for: those that they declare, those that they have from others, and what these
/// pass on. A name that a file may have from several places stands for nothing.
class Modules {
  public:
    /// Of several modules with one path, the first is the file's. What `modules` and `names_at_top` refer to, and
    /// `sources`, must outlive this object.
    Modules(std::vector<Module> modules, NamesAtTop names_at_top, const sources::Sources& sources);

    /// What a name stands for that the module exports.
    Meaning exported(SymbolNumber module, const std::string& name);

    /// What a name stands for that the file at `path` has from another module, or passes on from one.
    Meaning imported(std::string_view path, const std::string& name);

    /// What a name stands for in the file at `path`: what it declares at its top, or has from another module.
    Meaning meant(std::string_view path, const std::string& name) { return follow(path, name, View::INSIDE, 0); }

    /// What a link of the file at `path` leads to.
    Meaning followed(std::string_view path, const sources::Link& link);

    /// The file of the module that the file at `path` calls `module`; none when it is not in the index.
    std::optional<std::string_view> file_of(std::string_view path, const std::string& module);

    /// The symbol of the module that a file is; none for a file that is none.
    [[nodiscard]] std::optional<SymbolNumber> module_at(std::string_view path) const;

    /// Whether the symbol is that of a module of the index.
    [[nodiscard]] bool is_module(SymbolNumber symbol) const { return files_.contains(symbol); }

    /// The files that the file at `path` has names from, and those from which these pass them on.
    const std::set<std::string_view>& reached_from(std::string_view path);

    /// The links of a file; none for a file without an outline.
    [[nodiscard]] std::span<const sources::Link> links_of(std::string_view path) const;

  private:
    enum class View { INSIDE, OUTSIDE };  // which names are meant: all of the file, or those that it exports

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
