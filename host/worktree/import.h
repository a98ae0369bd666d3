// The import of a checkout: from its sources alone to an index that can be queried.
#pragma once

#include "host/files/checkout.h"
#include "host/index/index.h"
#include "host/indexing/import_report.h"
#include "host/indexing/progress.h"
#include "host/rules/path_rules.h"
#include "host/rules/repository_rules.h"
#include "host/worktree/listed_sources.h"
#include "host/worktree/read_sources.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host::worktree {

struct ImportRequest {
    std::string folder;  ///< the checkout
    /// Which files are left out, and which are tests; before what the checkout says of itself (rules/configuration.h),
    /// which comes before what is usual. The index notes the rules for tests.
    std::vector<PathRule> exclusions = {};
    std::vector<PathRule> tests = {};
};

/// Makes one new index of the files of a checkout whose names tell their language, in the way of
/// `imports::import_scip`: the old index stays until the new one is complete and durable. Equal files give equal rows.
/// `on_progress` may be empty; a file is three steps: being read, being resolved and being written.
///
/// Throws `std::runtime_error` with one line that says what to do.
indexing::ImportReport import_sources(const ImportRequest& request, NewIndex& index,
                                      const indexing::OnProgress& on_progress);

struct Imported {
    indexing::ImportReport report;
    std::vector<ImportedSource> sources;  ///< in the order of `ListedSources`
};

/// The same for sources that have been listed. `known` may be null.
Imported import_listed(const Checkout& checkout, const ListedSources& listed, const RepositoryRules& rules,
                       const KnownSources* known, NewIndex& index, indexing::Progress& progress);

}  // namespace host::worktree
