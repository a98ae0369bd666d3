// The refresh of an index after changes that few files can see.
#pragma once

#include "host/files/checkout.h"
#include "host/indexing/progress.h"
#include "host/rules/repository_rules.h"
#include "host/sqlite/sqlite_index.h"
#include "host/worktree/facts_store.h"
#include "host/worktree/import.h"
#include "host/worktree/listed_sources.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace host::worktree {

/// What is known of the sources that an index was made of, in the order of `ListedSources`.
struct IndexedSources {
    FactsStore& facts;
    std::vector<ImportedSource> sources;
    std::vector<std::uint32_t> changed;  ///< those that have other contents now, ascending
};

/// Revises the index where few files can see the changes (affected_files.h): only these are resolved and written, and
/// of the others nothing is read but what they show. The index becomes the one that `import_listed` would make, but for
/// the ids of declarations. All but the changed sources, and the rules, must be what the index was made of.
///
/// Returns what is then known of the sources. Returns none, and leaves the index, where that is not enough: many files
/// may see the change, something is not known, there is no room (indexing/revision.h), or the index cannot be read.
/// Throws what `import_listed` throws.
std::optional<std::vector<ImportedSource>> refresh_listed(const Checkout& checkout, const ListedSources& listed,
                                                          const RepositoryRules& rules, const IndexedSources& indexed,
                                                          const SqliteIndex& index, indexing::Progress& progress);

}  // namespace host::worktree
