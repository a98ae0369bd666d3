// The import of SCIP files: from what indexers have found in a repository, and what its sources say, to an index that
// can be queried.
//
// Every path of the SCIP files becomes a file, every global symbol that they define a declaration
// (scip/file_declarations.h), and what their other tokens name become edges (indexing/references.h). The sources
// complete them: what a token names of which the SCIP files do not say it (indexing/joining.h), and, where that is
// asked for, the files of the checkout of which the SCIP files say nothing.
#pragma once

#include "host/index/index.h"
#include "host/indexing/import_report.h"
#include "host/indexing/progress.h"
#include "host/rules/path_rules.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace host::imports {

struct ImportRequest {
    std::vector<std::string> scip_paths;  ///< at least one; "-" is standard input
    /// The folder that the sources are read from; by default the root of the repository that the SCIP files state
    /// (scip/project_root.h), where that is a folder of this machine. Without either the import does without sources.
    std::optional<std::string> checkout;
    /// Whether the other files of the checkout, which must then be given, come from their sources (worktree/import.h).
    bool has_other_files = false;
    /// Whether a path is left out, and whether it is a test; before what the repository says of itself
    /// (rules/configuration.h), which comes before what is usual. A file whose definitions all say that they are
    /// generated is left out unless a rule keeps it. The index notes the rules for tests.
    std::vector<PathRule> exclusions = {};
    std::vector<PathRule> tests = {};
};

/// Makes one new index of SCIP files, from its beginning to its end. Their paths become relative to the root of the
/// repository (scip/project_root.h). The order in which they are named changes nothing, and a content that is named
/// twice counts once. `on_progress` may be empty; a document is two steps: being read, and being written.
///
/// The new index replaces the old when it is complete and durable. Until then nothing of the old one changes: not when
/// the import fails, is killed, or is interrupted by an exception from `on_progress`, which comes out as it went in.
/// Two imports into one index do not run at once: the second fails. SCIP files without any usable document make an
/// empty index where there is none, but replace none: they were hardly meant to.
///
/// Equal SCIP files at equal paths give, with equal sources, equal bytes. Ids start at 1: files by path, declarations
/// by file, first line and order of first definition; edges stand by source file, target and resolution. A source that
/// is damaged, too large, no UTF-8 or not there costs what it would have said and nothing else. Memory grows with
/// symbols and declarations, and with pairs of a file and what it mentions; with sources, also with what these state.
///
/// Throws `std::runtime_error` with one line that names the file at fault and says what to do.
indexing::ImportReport import_scip(const ImportRequest& request, NewIndex& index,
                                   const indexing::OnProgress& on_progress);

}  // namespace host::imports
