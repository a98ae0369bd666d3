// Makes an index of what a front end has extracted from a repository.
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

/// Writes `extraction`, whose texts are in `spool`, into the new index, with what the index notes of itself, and puts it
/// into its place. `tests` tell which files are tests; the uses of files add to them (rules_of_uses.h), and the index
/// notes all. `checkout` is where the sources are, if they are. Adds to `report` what was made and found out, and
/// advances `progress` by the steps of each file.
///
/// Throws `std::runtime_error` with one line that says what has become of the old index, and what `progress` throws.
void make_index(const Extraction& extraction, std::vector<PathRule> tests, const std::optional<Checkout>& checkout,
                TextSpool& spool, NewIndex& index, Progress& progress, ImportReport& report);

}  // namespace host::indexing
