// The refresh of an index after changes that only the changed files themselves can see.
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

/// Revises the index where the changed sources have the surfaces that they had (`surface_of`): then the names of all
/// other files mean what they meant. Only the changed ones are read, resolved and written, and the index becomes the
/// one that `import_listed` would make. All but these sources, and the rules, must be what the index was made of.
///
/// Returns what is then known of the sources. Returns none, and leaves the index, where that is not enough: another
/// file may see the change, something is not known, or the index cannot be read. Throws what `import_listed` throws.
std::optional<std::vector<ImportedSource>> refresh_listed(const Checkout& checkout, const ListedSources& listed,
                                                          const RepositoryRules& rules, const IndexedSources& indexed,
                                                          const SqliteIndex& index, indexing::Progress& progress);

}  // namespace host::worktree
