// All declarations of a repository, by the container that they are members of and by name.
#pragma once

#include "host/resolve/repository.h"
#include "host/resolve/spellings.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::resolve {

/// A declaration of the repository: its number among those of all files.
using Symbol = std::uint32_t;

/// What has members: a module, a namespace or a type. Namespaces of one name in one container are one container.
using Container = std::uint32_t;

inline constexpr std::uint32_t NONE = 0xFFFF'FFFF;

/// An import of a file.
struct ImportPlace {
    FileId file = 0;
    std::uint32_t import = 0;  ///< index in the file's imports
};

/// Returns whether one declaration may be the definition that another of its name and container announces.
bool may_define(const syntax::Declaration& definition, const syntax::Declaration& announced);

/// The declarations of all files, numbered, with the containers that they stand in.
///
/// Filled in two steps, because what a declaration outside of its type is a member of must be looked up:
///
///     Catalog catalog(repository);
///     catalog.set_module(file, module);      // for each file
///     catalog.link();                        // all but those with an owner can be found
///     catalog.set_owner(symbol, type);       // for those whose owner was found
///     catalog.link();
class Catalog {
  public:
    /// `repository` must outlive the object.
    explicit Catalog(const Repository& repository);

    [[nodiscard]] const Repository& repository() const { return repository_; }
    [[nodiscard]] std::size_t files() const { return repository_.files.size(); }
    [[nodiscard]] const File& file(FileId id) const { return repository_.files[id]; }
    /// Returns what a file states; an empty one where nothing is known.
    [[nodiscard]] const syntax::Syntax& syntax(FileId id) const { return *syntaxes_[id]; }

    // Names.

    /// Returns the number of a name of a file.
    [[nodiscard]] Name name(FileId file, syntax::NameId name) const { return names_of_files_[file][name]; }
    /// Returns the number of a spelling; NONE when no file has it.
    [[nodiscard]] Name name(std::string_view spelling) const { return spellings_.find(spelling, NONE); }
    [[nodiscard]] std::string_view spelling(Name name) const { return spellings_[name]; }

    // Symbols.

    [[nodiscard]] Symbol symbol(FileId file, syntax::DeclarationId id) const { return first_symbols_[file] + id; }
    [[nodiscard]] std::size_t symbols() const { return first_symbols_.back(); }
    [[nodiscard]] FileId file_of(Symbol symbol) const { return files_of_symbols_[symbol]; }
    [[nodiscard]] syntax::DeclarationId declaration_id(Symbol symbol) const {
        return symbol - first_symbols_[file_of(symbol)];
    }
    [[nodiscard]] const syntax::Declaration& declaration(Symbol symbol) const {
        return syntax(file_of(symbol)).declarations[declaration_id(symbol)];
    }
    [[nodiscard]] Name name_of(Symbol symbol) const { return name(file_of(symbol), declaration(symbol).name); }
    /// Returns the symbol that a declaration is a member of, in its own file or as its owner; NONE at the top.
    [[nodiscard]] Symbol around(Symbol symbol) const;

    // What is built.

    /// Has no build for this system take a file.
    void leave_out(FileId file) { is_left_out_[file] = true; }
    [[nodiscard]] bool is_left_out(FileId file) const { return is_left_out_[file]; }
    [[nodiscard]] syntax::Built built(Symbol symbol) const {
        return is_left_out(file_of(symbol)) ? syntax::Built::NEVER : declaration(symbol).built;
    }

    /// Returns the declaration that stands for this one, where it is one of several of which a build takes one.
    [[nodiscard]] Symbol first_alternative(Symbol symbol) const {
        const syntax::DeclarationId first = declaration(symbol).alternative_of;
        return first == syntax::NO_DECLARATION ? symbol : this->symbol(file_of(symbol), first);
    }

    // Containers.

    /// Returns the number of the module with this key: files with one key have their names in common.
    Container module(const std::string& key);
    /// Returns the module with this key; NONE when there is none.
    [[nodiscard]] Container find_module(const std::string& key) const;
    void set_module(FileId file, Container module);
    [[nodiscard]] Container module_of(FileId file) const { return modules_of_files_[file]; }
    /// Returns the files of a module, ascending; none for other containers.
    [[nodiscard]] std::span<const FileId> files_of(Container module) const;
    /// Has a namespace be a module, such as one whose text is a file of its own.
    void set_container(Symbol symbol, Container container);
    /// Has a declaration be a member of a type that it stands outside of.
    void set_owner(Symbol symbol, Symbol type) { owners_[symbol] = type; }
    void link();
    /// Returns the container that a type or namespace is; NONE for other declarations.
    [[nodiscard]] Container container_of(Symbol symbol) const { return containers_[symbol]; }
    /// Returns the container that a declaration is a member of; NONE where that is not known.
    [[nodiscard]] Container home_of(Symbol symbol) const { return homes_[symbol]; }
    /// Returns the members of a name, by symbol. Valid until `link`.
    [[nodiscard]] std::span<const Symbol> members(Container container, Name name) const;

    /// Returns for each of `members`, in their order, the first of them that announces the same definitions; itself for
    /// a definition, and where nothing is defined. Valid until `link`.
    [[nodiscard]] std::span<const Symbol> alike(Container container, Name name) const;
    /// Returns those of `members` that are definitions, where others of them announce some; else none. Valid until
    /// `link`.
    [[nodiscard]] std::span<const Symbol> definitions(Container container, Name name) const;

    // Imports, but for those that bind locals.

    /// Has an import that states no name bind this one: that of the package it leads to.
    void set_import_name(ImportPlace place, Name name);

    /// Returns those that bind a name in a module or namespace, by file. Valid until `link`.
    [[nodiscard]] std::span<const ImportPlace> imports(Container container, Name name) const;
    /// Returns those that bind all names of another module in it, by file. Valid until `link`.
    [[nodiscard]] std::span<const ImportPlace> star_imports(Container container) const;
    /// Returns those of one file that bind all names of another module at its top, in its order. Valid until `link`.
    [[nodiscard]] std::span<const ImportPlace> star_imports_of(FileId file) const {
        return star_imports_of_files_[file];
    }

  private:
    Container container_in(Container home, Name name, Symbol symbol);
    void link_members();
    void link_announcements();
    void link_announcements(std::size_t begin, std::size_t end);
    void link_imports();
    [[nodiscard]] Name bound_name(const ImportPlace& place) const;

    const Repository& repository_;
    std::vector<const syntax::Syntax*> syntaxes_;  // by file; none is null
    Spellings spellings_;
    std::vector<std::vector<Name>> names_of_files_;  // by file, then by its own number of the name
    std::vector<Symbol> first_symbols_;              // by file; one more element holds the number of all
    std::vector<FileId> files_of_symbols_;
    std::unordered_map<std::string, Container> modules_;
    std::vector<Container> modules_of_files_;
    std::vector<bool> is_left_out_;  // by file
    std::vector<std::vector<ImportPlace>> star_imports_of_files_;
    std::vector<std::vector<FileId>> files_of_modules_;        // by container
    std::unordered_map<std::uint64_t, Container> namespaces_;  // by container and name
    std::unordered_map<Symbol, Symbol> owners_;
    std::unordered_map<std::uint64_t, Name> names_of_imports_;  // by file and import
    std::vector<Container> containers_;                         // by symbol
    std::vector<Container> homes_;                              // by symbol
    std::uint32_t container_count_ = 0;
    // Sorted by container, then name. Of each container, where its part begins; one more element holds the end.
    std::vector<std::uint32_t> first_members_;
    std::vector<Symbol> members_;
    std::vector<Name> member_names_;
    std::vector<Symbol> alike_;
    std::vector<std::uint32_t> first_definitions_;
    std::vector<Symbol> definitions_;
    std::vector<Name> definition_names_;
    std::vector<std::uint32_t> first_imports_;
    std::vector<ImportPlace> imports_;
    std::vector<Name> import_names_;  // STAR for those of all names
};

}  // namespace host::resolve
