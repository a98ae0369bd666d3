// Revises an index after changes that the declarations of its files do not show.
#pragma once

#include "host/files/text_spool.h"
#include "host/index/revision.h"
#include "host/indexing/extraction.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

namespace host::indexing {

/// Returns what makes of an index that `make_index` would make of `extraction`, but for the contents of some files.
///
/// `files`, by index in `extraction.files`, must declare and call what they did, at other lines and with other texts
/// maybe; of all other files the extraction needs neither lines nor texts nor references. `state` is of the index that
/// is there, with the edges from `files`. `unresolved` is added to what the report says of name tokens without a
/// declaration, by language. The rules for tests that were given to `make_index` must be in force.
///
/// Returns none where rows of further files would change: a file gets or loses its declaration as a module, a file in a
/// folder of tests is used from elsewhere (rules_of_uses.h), or a test begins or ceases to reach other files.
std::optional<Revision> revise(const Extraction& extraction, std::span<const std::uint32_t> files,
                               const IndexState& state, const std::map<std::string, std::int64_t>& unresolved,
                               TextSpool& spool);

}  // namespace host::indexing
