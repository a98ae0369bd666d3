// A page's grounding as JSON, for programs.
#pragma once

#include "host/page/outline.h"
#include "host/page/page.h"
#include "host/page/page_head.h"
#include "host/page/section.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace host {

/// What JSON takes of the index beside the facts of a page.
struct IndexTexts {
    struct Description {
        storage::SymbolId declaration = 0;
        std::string signature;
        std::string documentation;
    };
    std::vector<Description> descriptions = {};  ///< of the page's declarations that have any, in their order
    std::vector<FileOutline> outlines = {};
};

/// Reads what the chosen sections take. `db` is the page's. Throws `IndexError`.
IndexTexts read_index_texts(const Page& page, storage::Database& db, const SectionChoice& only);

/// Writes one JSON object with the keys of the chosen sections, record by record, so that no page has to fit into
/// memory twice. Mappings keep the component's order; sets are sorted arrays. A head comes first, as "stamp" and
/// "title". host/schemas/page.schema.json says what the keys hold.
///
/// Bytes that are not UTF-8 become U+FFFD: paths that differ in nothing else then look alike, and a mapping by path
/// holds one key for each of them, the same key twice. Throws what `tests_reaching` throws; whether everything was
/// written is for the caller to ask of `out`. `texts` are those of the page and of these sections.
void write_json(std::ostream& out, const Page& page, const IndexTexts& texts, const SectionChoice& only = {},
                const PageHead& head = {});

}  // namespace host
