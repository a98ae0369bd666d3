// The results of look-ups as JSON for programs.
#pragma once

#include "host/lookup/declarations.h"
#include "host/lookup/files.h"
#include "host/lookup/index_stats.h"

#include <iosfwd>
#include <span>

namespace host {

/// Each writes one JSON object; host/schemas/ says what the keys hold. Bytes that are not UTF-8 become U+FFFD.
void write_json(std::ostream& out, std::span<const ListedFile> files);
void write_json(std::ostream& out, const FoundDeclarations& found);
void write_json(std::ostream& out, const IndexStats& stats);

}  // namespace host
