// The import of a SCIP file: from what an indexer has found in a repository to an index that can be queried.
//
// Every path of the SCIP file becomes a file, every global symbol that it defines a declaration, and its other
// occurrences of declared symbols become edges. Where a symbol is declared in the occurrence's own file, the edge
// leads there and is `local`. Else it is an `import`, and of several declarations leads to one whose file's documents
// describe the symbol, to the first of these by path.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace embedded::scip {

/// What an import has made, and what it could not use.
struct ImportCounts {
    std::int64_t files = 0;
    std::int64_t declarations = 0;
    std::int64_t edges = 0;               ///< rows; each stands for one or more references
    std::int64_t unparsed_symbols = 0;    ///< distinct symbol strings that do not parse, all passed over
    std::int64_t unusable_documents = 0;  ///< passed over for their path: empty, absolute, with ".." or a NUL byte
};

/// Told again and again, from the beginning until the new index takes its place, how many steps of how many are done;
/// `total` is never 0. A document is two steps: being read, and being written. May throw, which ends the import.
using ImportProgress = std::function<void(std::int64_t done, std::int64_t total)>;

/// Makes the index of a SCIP file at `index_path`, in place of any that is there. `progress` may be empty.
///
/// The new index replaces the old when it is complete and durable. Until then nothing of the old one changes: not
/// when the import fails, is killed, or is interrupted by an exception from `progress`, which comes out as it went
/// in. Two imports into one index do not run at once: the second fails. A SCIP file without any usable document makes
/// an empty index where there is none, but replaces none: it was hardly meant to.
///
/// Equal SCIP files at equal paths give equal bytes. Ids start at 1: files by path, declarations by file, first line
/// and order of first definition; edges stand by source file, target and resolution. A definition without a usable
/// range is taken to stand on line 1. Memory grows with symbols, and with pairs of a file and a symbol that it
/// mentions, not with occurrences.
///
/// Throws `std::runtime_error` with one line that names the file at fault and says what to do.
ImportCounts import_scip(const std::string& scip_path, const std::string& index_path, const ImportProgress& progress);

}  // namespace embedded::scip
