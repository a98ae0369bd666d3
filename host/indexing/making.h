// Makes an index from what a front end extracts from a repository.
#pragma once

#include "host/files/checkout.h"
#include "host/files/text_spool.h"
#include "host/index/index.h"
#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/indexing/progress.h"
#include "host/rules/path_rules.h"

#include <optional>
#include <vector>

namespace host::indexing {

/// Writes `extraction` and its notes into the new index, and commits that. The texts of `extraction` are in `spool`.
///
/// `tests` decide which files are tests. Rules that follow from the uses of files (rules_of_uses.h) are added to them,
/// and the index stores all. `checkout` holds the sources, if they are available. Adds to `report` what was written and
/// found, and advances `progress` by the steps of each file. `room` is how many ids are left behind the declarations of
/// each file, for those that a revision adds (revision.h).
///
/// Throws `std::runtime_error` with one line that says what became of the old index, and what `progress` throws.
void make_index(const Extraction& extraction, std::vector<PathRule> tests, const std::optional<Checkout>& checkout,
                TextSpool& spool, NewIndex& index, RowId room, Progress& progress, ImportReport& report);

}  // namespace host::indexing
