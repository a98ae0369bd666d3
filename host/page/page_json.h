// A page's grounding as JSON, for programs.
#pragma once

#include "host/page/page.h"
#include "host/page/page_head.h"
#include "host/page/page_values.h"
#include "host/page/section.h"

#include <iosfwd>

namespace host {

/// Writes one JSON object with the keys of the chosen sections, record by record: that takes no more memory, however
/// long the page, than some 100 KB and one record's. Mappings keep the component's order; sets are sorted arrays. A head
/// comes first, as "stamp" and "title". host/schemas/page.schema.json says what the keys hold.
///
/// Bytes that are not UTF-8 become U+FFFD: paths that differ in nothing else then look alike, and a mapping by path
/// holds one key for each of them, the same key twice. Whether everything was written is for the caller to ask of `out`.
/// `values` are the page's, of these sections at least.
void write_json(std::ostream& out, const Page& page, const PageValues& values, const SectionChoice& sections = {},
                const PageHead& head = {});

}  // namespace host
