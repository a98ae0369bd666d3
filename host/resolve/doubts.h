// What keeps a name from meaning for certain the declaration that it leads to: builds differ in what they have.
#pragma once

#include "host/resolve/catalog.h"
#include "host/resolve/languages.h"
#include "host/resolve/meaning.h"

namespace host::resolve {

class Doubts {
  public:
    /// Both must outlive the object. The catalog must be linked before anything is asked.
    Doubts(const Catalog& catalog, const Languages& languages) : catalog_(catalog), languages_(languages) {}

    /// Returns whether a declaration is only there on other systems than the one whose code a file is.
    [[nodiscard]] bool is_elsewhere(FileId file, Symbol symbol) const;

    /// Returns whether a declaration is, or is a member of, what a library may have instead: `#ifndef HAVE_F`.
    [[nodiscard]] bool is_substitute(Symbol symbol) const;

    /// Returns whether a declaration only announces something, and a build may lack even that: `#ifdef OLD`,
    /// `void *f();`. Where no file defines it, a library does.
    [[nodiscard]] bool is_announced_at_most(Symbol symbol) const;

    /// Returns whether a token declares a type, which may be defined anywhere or be no more than a name:
    /// `typedef struct s s_t;`.
    [[nodiscard]] bool announces_first(const Place& token) const;

    /// Returns whether a mention calls what would be a type, as C never does: `kill(id, signal)` where the file has a
    /// `struct kill`.
    [[nodiscard]] bool is_called_type(FileId file, const syntax::Mention& mention, Symbol symbol) const;

  private:
    const Catalog& catalog_;
    const Languages& languages_;
};

}  // namespace host::resolve
