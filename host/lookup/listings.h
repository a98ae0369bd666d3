// The results of look-ups as text for people.
#pragma once

#include "host/lookup/declarations.h"
#include "host/lookup/files.h"
#include "host/lookup/index_stats.h"

#include <iosfwd>
#include <span>

namespace host {

/// Each writes tables with a heading, and nothing of what there is none of.
void write_text(std::ostream& out, std::span<const ListedFile> files);
void write_text(std::ostream& out, const FoundDeclarations& found);
void write_text(std::ostream& out, const IndexStats& stats);

}  // namespace host
