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

  private:
    [[nodiscard]] bool may_mean(FileId file, syntax::Space space, Symbol symbol) const;

    const Catalog& catalog_;
    const Languages& languages_;
    std::vector<std::pair<Name, Symbol>> in_namespaces_;  // ascending
};

}  // namespace host::resolve
