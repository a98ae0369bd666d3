// Revises an index after changes that few of its files can see.
#pragma once

#include "host/files/text_spool.h"
#include "host/index/revision.h"
#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

namespace host::indexing {

/// How many ids `make_index` should leave behind the declarations of each file of an index that is to be revised: as
/// many may be added until it must be made anew.
inline constexpr RowId ROOM_FOR_MORE = 16;

/// Returns what makes of an index that `make_index` would make of `extraction`, but for the ids of declarations, which
/// keep their order.
///
/// `files`, by index in `extraction.files` and ascending, are all whose declarations, references or contents are others
/// than those that the index has; of the other files the extraction needs neither lines nor texts nor references.
/// `state` is of the index that is there. `found` has what a report says of the files that were read. `unresolved` is
/// added to what it says of name tokens without a declaration, by language. The rules for tests that were given to
/// `make_index` must be in force.
///
/// Returns none where there is no room, and where rows of further files would change: a file gets or loses its
/// declaration as a module, a file in a folder of tests is used from elsewhere (rules_of_uses.h), or a test begins or
/// ceases to reach other files. None also where another file refers to a declaration that is gone.
std::optional<Revision> revise(const Extraction& extraction, std::span<const std::uint32_t> files,
                               const IndexState& state, const ImportReport& found,
                               const std::map<std::string, std::int64_t>& unresolved, TextSpool& spool);

}  // namespace host::indexing
