// What a name that nothing binds may mean, where macros declare what no text spells out and names are looked up where a
// macro is used.
#pragma once

#include "host/resolve/catalog.h"
#include "host/resolve/languages.h"

#include <utility>
#include <vector>

namespace host::resolve {

class PossibleTargets {
  public:
    /// All must outlive the object. The catalog must be linked.
    PossibleTargets(const Catalog& catalog, const Languages& languages);

    /// Returns the declarations outside of types that a mention of the file, which leads to nothing, may be one of, by
    /// symbol: those of its name that the linker finds, and in a header those that others include. None where more
    /// declarations bear the name than tell anything, and in languages whose bindings are all spelled out.
    [[nodiscard]] std::vector<Symbol> of(FileId file, const syntax::Mention& mention) const;

    /// Returns the declarations that the linker may take for the same as this one, where no file defines it as it is
    /// declared: those of its name in other files, with other parameters or as a variable.
    [[nodiscard]] std::vector<Symbol> linked_with(Symbol symbol) const;

    /// Returns the macros that a file may see under a name where it declares something else by it.
    [[nodiscard]] std::vector<Symbol> macros_over(Symbol declared) const;

    /// Returns the macros that may have taken the place of this one where a macro of a file is used: of files that
    /// include the file.
    [[nodiscard]] std::vector<Symbol> macros_after(FileId file, Symbol macro) const;

  private:
    /// What the declarations of a name are that stand at the top of a file and that others can name.
    struct Kinds {
        bool has_macro = false;
        bool has_macros = false;
        bool has_value = false;
        bool has_function = false;
    };

    void note_kind(Symbol symbol);
    [[nodiscard]] const Kinds& kinds(Symbol symbol) const;
    template <class IsWanted>
    [[nodiscard]] std::vector<Symbol> others(Symbol symbol, const IsWanted& is_wanted) const;

    [[nodiscard]] bool may_mean(FileId file, syntax::Space space, Symbol symbol) const;

    const Catalog& catalog_;
    const Languages& languages_;
    std::vector<std::pair<Name, Symbol>> in_namespaces_;  // ascending
    std::vector<Kinds> kinds_;                            // by name
};

}  // namespace host::resolve
