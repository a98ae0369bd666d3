// A page's grounding as JSON, for programs.
#pragma once

#include "embedded/page.h"

#include <iosfwd>

namespace embedded {

/// Writes one JSON object, record by record, so that no page has to fit into memory twice. Mappings keep the
/// component's order; sets are sorted arrays; bytes that are not UTF-8 become U+FFFD. README.md lists the keys.
void write_json(std::ostream& out, const Page& page);

}  // namespace embedded
