// The blocks of the declarations that a page shows.
#pragma once

#include "embedded/index/database.h"
#include "embedded/page/page.h"
#include "embedded/page/scoped_names.h"
#include "models/ordered_map.h"

#include <cstddef>
#include <string>
#include <vector>

namespace embedded {

/// Writes the selected declarations of a page, each as a block of its own. The page and its index must outlive it.
class DeclarationBlocks {
  public:
    /// Asks the index what it says of the declarations in words. Throws `IndexError`.
    DeclarationBlocks(const Page& page, storage::Database& db, const ScopedNames& names);

    /// Reads the source of the declarations, once; what the page may not show is left out.
    void read_sources(const PageSources& sources);

    /// The blocks in the order of the selection. The first `sources` of them have their source as it was read, unless it
    /// is part of a source that another block prints, which they say then; the others have their signatures.
    [[nodiscard]] std::vector<std::string> blocks(std::size_t sources) const;

    /// How many of the first `wanted` declarations have a source that `blocks(sources)` prints nowhere.
    [[nodiscard]] std::size_t without_source(std::size_t sources, std::size_t wanted) const;

  private:
    struct Declaration {
        const storage::ScopeSymbol* symbol;
        std::string introduction;  // everything above the code
        std::string language;      // of its file; empty when unknown
        std::vector<std::string> signature;
        std::vector<std::string> source;
    };

    // The declaration that is printed whole with the source of this one in it; else null.
    [[nodiscard]] const Declaration* printed_around(std::size_t declaration, std::size_t sources) const;

    const ScopedNames& names_;
    std::vector<Declaration> declarations_;                               // in the order of the selection
    models::OrderedMap<models::Text, std::vector<std::size_t>> by_file_;  // the places of those of each file
};

}  // namespace embedded
