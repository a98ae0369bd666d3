// What a page shows of its selected declarations.
#pragma once

#include "host/index/database.h"
#include "host/page/page.h"
#include "host/page/use_sites.h"
#include "models/excerpt.h"

#include <string>
#include <vector>

namespace host {

/// A selected declaration, with what its file and the index say of it in words.
struct SelectedDeclaration {
    const storage::ScopeSymbol* symbol = nullptr;  ///< a record of the page, and lives as long
    std::string name = {};                         ///< as it is shown: `Page::names`
    std::string language = {};                     ///< of its file; empty when unknown
    std::string documentation = {};                ///< its doc comment; empty when it has none
    std::string signature = {};                    ///< empty when the index has none
    std::vector<std::string> source = {};          ///< its lines, as far as its file has them
    models::Excerpt<UseSite> uses = {};            ///< by production files outside of the page
};

/// Returns the selected declarations of a page, in the order of the selection. With sources, each of their files is
/// read once; what the page may not show is left out. `db` is the page's. Throws `IndexError` and what
/// `db.check_interrupt` throws.
std::vector<SelectedDeclaration> selected_declarations(const Page& page, storage::Database& db, bool with_source);

}  // namespace host
