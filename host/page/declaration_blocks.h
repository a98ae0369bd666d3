// The blocks of the declarations that a page shows.
#pragma once

#include "host/index/database.h"
#include "host/page/page.h"
#include "host/page/passage.h"
#include "host/page/scoped_names.h"
#include "models/ordered_map.h"

#include <cstddef>
#include <string>
#include <vector>

namespace host {

/// Writes the selected declarations of a page, each as a block of its own. The page and its index must outlive it.
class DeclarationBlocks {
  public:
    /// Asks the index what it says of the declarations in words. Throws `IndexError`; as the functions that follow, what
    /// `db.check_interrupt` throws.
    DeclarationBlocks(const Page& page, storage::Database& db);

    /// Reads the source of the declarations, once; what the page may not show is left out.
    void read_sources(const PageSources& sources);

    /// In how many steps the blocks can be shortened.
    [[nodiscard]] std::size_t steps() const { return sources_ + declarations_.size(); }

    /// The blocks in the order of the selection, shortened by so many steps: each takes from one block, from the last one
    /// on, first the source and then the doc comment. A block without a source has the signature. A source that is part of
    /// one that another block prints is not printed; the block says so.
    [[nodiscard]] std::vector<PassageItem> blocks(std::size_t steps) const;

  private:
    struct Declaration {
        const storage::ScopeSymbol* symbol;
        std::string introduction;  // everything above the doc comment
        std::string comment;       // what it says, as a paragraph; empty when it says nothing
        std::string language;      // of its file; empty when unknown
        std::string signature;     // as a fenced block, as the source is
        std::string source;
    };

    // For each declaration the one that is printed whole with the source of it in it, when the first `sources` have
    // theirs; null for the others.
    [[nodiscard]] std::vector<const Declaration*> printed_around(std::size_t sources) const;

    const storage::Database& db_;
    const ScopedNames& names_;
    std::vector<Declaration> declarations_;                               // in the order of the selection
    models::OrderedMap<models::Text, std::vector<std::size_t>> by_file_;  // the places of those that have a source
    std::size_t sources_ = 0;                                             // how many were to be read
};

}  // namespace host
