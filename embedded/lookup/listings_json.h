// What somebody has looked for, as JSON for programs.
#pragma once

#include "embedded/lookup/declarations.h"
#include "embedded/lookup/files.h"
#include "embedded/lookup/index_stats.h"

#include <iosfwd>
#include <span>

namespace embedded {

/// Each writes one JSON object; README.md lists the keys. Bytes that are not UTF-8 become U+FFFD.
void write_json(std::ostream& out, std::span<const ListedFile> files);
void write_json(std::ostream& out, const FoundDeclarations& found);
void write_json(std::ostream& out, const IndexStats& stats);

}  // namespace embedded
