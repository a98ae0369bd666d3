// The symbol strings of SCIP, by which an index names what it declares and refers to.
//
// A symbol is `local ID`, which means something in its own document only, or it is global:
//
//     scheme ' ' manager ' ' package ' ' version ' ' descriptor+
//
//     scip-typescript npm rxjs 7.8.2 src/`Observable.ts`/Observable#subscribe().
//
// The descriptors lead from the outermost scope to the symbol itself. A character behind each name says what it
// names: here two namespaces, a type and a method.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host::scip {

enum class Suffix {
    NAMESPACE,       ///< name/
    TYPE,            ///< name#
    TERM,            ///< name.
    METHOD,          ///< name(disambiguator).
    MACRO,           ///< name!
    META,            ///< name:
    TYPE_PARAMETER,  ///< [name]
    PARAMETER,       ///< (name)
};

/// One step of a global symbol. The name is never empty and stands as in the source: no backticks around it, none
/// doubled inside.
struct Descriptor {
    std::string name;
    Suffix suffix;

    friend bool operator==(const Descriptor&, const Descriptor&) = default;
};

/// A global symbol in its parts. The views are of the string that was parsed.
struct Symbol {
    std::string_view head;                ///< all before the descriptors, as it stands: one release of a package
    std::string package;                  ///< the package's name in it; "." for none
    std::string_view scope;               ///< all before the last descriptor
    std::vector<Descriptor> descriptors;  ///< at least one, outermost first
};

/// Whether the symbol is local to its document.
bool is_local(std::string_view symbol);

/// In bytes. No indexer writes longer symbols or names; every text that is made of one takes its size again.
inline constexpr std::size_t LONGEST_SYMBOL = 65'536;

/// The parts of a global symbol; none when the string does not parse or is longer than `LONGEST_SYMBOL`. A variable
/// that scip-python names twice has one descriptor. Every byte of a character beyond ASCII is taken for a letter.
std::optional<Symbol> parse_symbol(std::string_view symbol);

/// The symbol as the project in `folder` of a repository means it. A package without a name is that of the project
/// alone when its symbols name their source files: these have such paths in every project. The folder then takes the
/// place of the version.
///
///     front    scip-typescript npm . . `a.ts`/A#    scip-typescript npm . front `a.ts`/A#
std::string of_project(std::string_view symbol, std::string_view folder);

/// Where the package of a symbol has no name, the path of the source file that the symbol names, relative to the folder
/// of its project. None for any other symbol.
///
///     scip-typescript npm . . src/`a.ts`/A#    src/a.ts
std::optional<std::string> file_of_nameless_package(std::string_view symbol);

/// A name as people write it: `<constructor>` and `<init>` are constructor, `<get>x` and `<set>x` are x.
std::string written(std::string_view name);

/// Whether the symbol reads or sets a property: `<get>x`, `<set>x`.
bool is_accessor(const Descriptor& symbol);

/// Whether a name is one of those that indexers give constructors.
bool is_constructor_name(std::string_view name);

/// Where the descriptors name a source file as a namespace, the number of those up to that one; else 0.
///
///     src/`a.ts`/A#        2
std::size_t descriptors_of_file(std::span<const Descriptor> descriptors);

/// The name of the module that a symbol stands for: a file, or a package of Python. None for any other symbol.
///
///     src/`a.ts`/             src/a.ts
///     `a.b`/__init__:         a.b
std::optional<std::string> module_name(std::span<const Descriptor> descriptors);

/// What the symbols of all that a module declares begin with, for the symbol of the module.
///
///     src/`a.ts`/             src/`a.ts`/
///     `a.b`/__init__:         `a.b`/
std::string_view scope_of_module(std::string_view module);

/// A descriptor as it stands in a symbol.
std::string spelled(const Descriptor& descriptor);

/// Whether the symbol stands for the source file at `path` as a module, as it does where that file defines it.
bool is_module_of(std::span<const Descriptor> descriptors, std::string_view path);

/// Whether the symbol is one that Python itself declares, as scip-python names it: `... builtins/Warning#`.
bool is_built_in(std::string_view symbol);

/// Whether the symbol extends a declaration that stands elsewhere: it lives in a `declare module "x"` or a
/// `declare global` of its file.
bool is_augmentation(std::span<const Descriptor> descriptors);

}  // namespace host::scip
