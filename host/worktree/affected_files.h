// The files whose rows in an index a change of sources may change.
#pragma once

#include "host/indexing/progress.h"
#include "host/worktree/extract.h"
#include "host/worktree/facts_store.h"
#include "host/worktree/source_facts.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace host::worktree {

/// A source that has changed.
struct ChangedSource {
    std::uint32_t file = 0;   ///< its index among all
    SourceFacts old_surface;  ///< what others could see of it
};

/// Returns the changed sources, and the others that have a name which means something else since (changed_names.h), by
/// index, ascending. `files` are all sources as they are now: of those that have not changed the surfaces, whose facts
/// are in the store. Returns none where that is not known, and where they are so many that an import is as fast.
std::optional<std::vector<std::uint32_t>> affected_files(std::span<const ChangedSource> changed,
                                                         std::span<const ReadFile> files, FactsStore& facts,
                                                         indexing::Progress& progress);

}  // namespace host::worktree
