// Which names may mean something else after a change of some files.
//
// What a token means is found by looking up names: its own, then those in what the declarations state that it leads to,
// and so on. So another file can see a change only where it looks up a name that
//
//   - changed: a declaration or import of a changed file has it, and is new, gone, or states something else; or
//   - leads to one that changed: a declaration or import has it, and states something in which that is looked up.
//
//     a.py   class A(B): ...     was class A(C), so that A changed
//     b.py   def make() -> A     states A, so that make leads to it
//     c.py   make().run()        looks up make
#pragma once

#include "host/resolve/name_set.h"
#include "host/resolve/repository.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace host::resolve {

class ChangedNames {
  public:
    /// How a name may mean something else.
    enum class Change : std::uint8_t {
        UNCHANGED,
        IN_MODULES,  ///< as one that a module has by an import: not to a file that binds it itself
        EVERYWHERE,
    };

    /// Adds a name, unless it is empty.
    void add(std::string_view name) { declared_.add(name); }

    /// Adds a name that others can take from a module which imports it.
    void add_imported(std::string_view name) { imported_.add(name); }

    /// Adds the names by which a declaration of a file is found. Returns false where it is found without any: it is
    /// what a module exports as a whole.
    [[nodiscard]] bool add(const syntax::Syntax& syntax, const syntax::Declaration& declaration);

    /// Adds the names that lead to these. `files` are all of a repository. Returns false where names do not tell what
    /// does: one of these is what a module exports as a whole, a file has all names of what it means, or they are so
    /// many that most files have one.
    [[nodiscard]] bool add_leading_to_these(std::span<const File> files);

    /// Adds the names that lead to others in one file, to which these mean something else. Returns the same.
    [[nodiscard]] bool add_leading_to(const ChangedNames& others, const File& file);

    [[nodiscard]] bool are_none() const { return declared_.size() + imported_.size() == 0; }

    /// Returns what of these a name of a file, which may be a path of several (`a::b`), is or contains.
    [[nodiscard]] Change change_of(std::string_view name) const;

    /// Returns whether a file, of which the syntax holds all that it mentions, looks up one of these.
    [[nodiscard]] bool are_looked_up_in(const File& file) const;

  private:
    [[nodiscard]] bool has_any(const syntax::Syntax& syntax, std::size_t declared, std::size_t imported) const;

    NameSet declared_;
    NameSet imported_;
};

}  // namespace host::resolve
