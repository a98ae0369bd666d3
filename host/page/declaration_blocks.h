// The blocks of the declarations that a page shows.
#pragma once

#include "host/index/database.h"
#include "host/links/source_links.h"
#include "host/page/page.h"
#include "host/page/passage.h"
#include "host/page/selected_declarations.h"
#include "host/page/source_nesting.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The selected declarations of a page, each as a block of its own, in the order of the selection. Each step of
/// shortening takes from one block, from the last one on, first the source, then where it is used, then the doc
/// comment. A block without a source has the signature. A source that is part of one that another block prints is not
/// printed; the block says so.
class DeclarationBlocks : public Items {
  public:
    /// Asks the index what it says of the declarations in words and, when they are to have their source, reads each of
    /// their files once; what the page may not show is left out. `links` may be null. `page` and `db` must outlive this
    /// object. Throws `IndexError`; as the functions that follow, what `db.check_interrupt` throws.
    DeclarationBlocks(const Page& page, storage::Database& db, bool with_source, const SourceLinks* links);

    [[nodiscard]] std::size_t steps() const override { return sources_ + 2 * declarations_.size(); }
    [[nodiscard]] std::vector<ItemSize> sizes(std::size_t steps) const override;
    void print(std::string& text, std::size_t count, std::size_t steps) const override;

  private:
    struct Declaration {
        std::string introduction;  // name, kind, place and counts
        std::string uses;          // where it is used, as a paragraph; empty when nobody knows
        std::size_t cited_uses;    // how many places that names
        std::string comment;       // what it says, as a paragraph; empty when it says nothing
        std::string signature;     // as a fenced block, as the source is
        std::string source;
        std::string reference;  // what stands for a source that is part of this one
    };

    // What a block consists of.
    struct Block {
        std::string_view introduction;
        std::string_view uses;
        std::string_view comment;
        std::string_view source;  // or what stands for it
        bool lacks_source = false;
        bool lacks_comment = false;
        std::size_t lacking_uses = 0;
    };

    DeclarationBlocks(std::span<const SelectedDeclaration> declarations, const Page& page, const storage::Database& db,
                      bool with_source, const SourceLinks* links);

    [[nodiscard]] std::vector<Block> blocks(std::size_t steps) const;

    const storage::Database& db_;
    std::vector<Declaration> declarations_;  // in the order of the selection
    SourceNesting nesting_;
    std::size_t sources_;  // how many were to be read
};

}  // namespace host
