// The import of a checkout: from its sources alone to an index that can be queried.
#pragma once

#include "host/files/checkout.h"
#include "host/index/index.h"
#include "host/indexing/import_report.h"
#include "host/indexing/progress.h"
#include "host/rules/path_rules.h"
#include "host/rules/repository_rules.h"
#include "host/worktree/facts_store.h"
#include "host/worktree/listed_sources.h"

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

/// Makes one new index of the files of a checkout whose names tell their language, in the way of `scip::import_scip`:
/// the old index stays until the new one is complete and durable. Equal files give equal rows. `on_progress` may be
/// empty; a file is three steps: being read, being resolved and being written.
///
/// Throws `std::runtime_error` with one line that says what to do.
indexing::ImportReport import_sources(const ImportRequest& request, NewIndex& index,
                                      const indexing::OnProgress& on_progress);

/// What an index has of a source, beside its rows.
struct ImportedSource {
    std::int64_t content_hash = 0;  ///< 0 when it could not be read
    std::int64_t unresolved = 0;    ///< name tokens that lead to nothing in the checkout
};

struct Imported {
    indexing::ImportReport report;
    std::vector<ImportedSource> sources;  ///< in the order of `ListedSources`
};

/// What is known of sources without reading them.
struct KnownSources {
    FactsStore& facts;
    std::vector<std::int64_t> content_hashes;  ///< in the order of `ListedSources`; 0 for one that must be read
};

/// The same for sources that have been listed. `known` may be null.
Imported import_listed(const Checkout& checkout, const ListedSources& listed, const RepositoryRules& rules,
                       const KnownSources* known, NewIndex& index, indexing::Progress& progress);

}  // namespace host::worktree
