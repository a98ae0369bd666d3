// A page's grounding as JSON, for programs.
#pragma once

#include "host/page/page.h"
#include "host/page/page_head.h"
#include "host/page/section.h"

#include <iosfwd>

namespace host {

/// Writes one JSON object with the keys of the chosen sections, record by record, so that no page has to fit into
/// memory twice. Mappings keep the component's order; sets are sorted arrays. A head comes first, as "stamp" and
/// "title". host/schemas/page.schema.json says what the keys hold.
///
/// Bytes that are not UTF-8 become U+FFFD: paths that differ in nothing else then look alike, and a mapping by path
/// holds one key for each of them, the same key twice. Throws what `tests_reaching` throws; whether everything was
/// written is for the caller to ask of `out`. `db` is the page's, and is asked for the descriptions.
void write_json(std::ostream& out, const Page& page, storage::Database& db, const SectionChoice& only = {},
                const PageHead& head = {});

}  // namespace host
