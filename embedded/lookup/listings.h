// What somebody has looked for, as text for people.
#pragma once

#include "embedded/lookup/declarations.h"
#include "embedded/lookup/files.h"
#include "embedded/lookup/index_stats.h"

#include <iosfwd>
#include <span>

namespace embedded {

/// Each writes tables with a heading, and nothing of what there is none of.
void write_text(std::ostream& out, std::span<const ListedFile> files);
void write_text(std::ostream& out, const FoundDeclarations& found);
void write_text(std::ostream& out, const IndexStats& stats);

}  // namespace embedded
