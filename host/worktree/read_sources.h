// The sources of a checkout, read and resolved: what an index is made from.
#pragma once

#include "host/files/checkout.h"
#include "host/files/text_spool.h"
#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/indexing/progress.h"
#include "host/resolve/repository.h"
#include "host/worktree/extract.h"
#include "host/worktree/facts_store.h"
#include "host/worktree/listed_sources.h"

#include <cstdint>
#include <vector>

namespace host::worktree {

/// What an index has of a source, beside its rows.
struct ImportedSource {
    std::int64_t content_hash = 0;  ///< 0 when it could not be read
    std::int64_t unresolved = 0;    ///< name tokens that lead to nothing in the checkout
};

/// What is known of sources without reading them.
struct KnownSources {
    FactsStore& facts;
    std::vector<std::int64_t> content_hashes;  ///< in the order of `ListedSources`; 0 for one that must be read
};

class ReadSources {
  public:
    /// Reads the listed files, on all cores; the texts of their declarations go to the spool. `known` may be null. A
    /// file is one step of the progress.
    ReadSources(const Checkout& checkout, const ListedSources& listed, const KnownSources* known, TextSpool& spool,
                indexing::Progress& progress);

    /// Resolves the names of the files, on all cores. Returns what an index is made from, which lives as long as this
    /// object; to be called once. A listed file is one step of the progress. Adds to `report` what was read, and what
    /// could not be.
    ///
    /// `described` are files, none of them listed, of which another front end tells all but what their tokens mean: of
    /// each, the extraction holds where the names of its declarations and its tokens stand, and as a reference each
    /// file that it imports. Names lead to them as to any others. Their syntax must outlive this object.
    indexing::Extraction extract(const std::vector<resolve::File>& described, indexing::Progress& progress,
                                 indexing::ImportReport& report);

    /// Returns what there is of the files after `extract`, in the order of `ListedSources`.
    [[nodiscard]] const std::vector<ImportedSource>& imported() const { return imported_; }

  private:
    // Resolves the names of the files, whose mentions serve no further, and of the files that are described. Returns
    // what was found of these.
    std::vector<FoundNames> resolve_files(std::size_t described, indexing::Progress& progress);

    std::vector<ReadFile> files_;
    resolve::Repository repository_;
    std::vector<ImportedSource> imported_;
};

}  // namespace host::worktree
