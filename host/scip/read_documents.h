// Reads SCIP files, and beside them the sources that they describe: what an index is made from.
#pragma once

#include "host/files/checkout.h"
#include "host/files/text_spool.h"
#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/indexing/progress.h"
#include "host/rules/path_rules.h"
#include "host/scip/project_root.h"
#include "host/scip/scip_files.h"
#include "host/sources/source_reader.h"

#include <optional>
#include <set>
#include <string>

namespace host::scip {

struct ReadDocuments {
    indexing::Extraction extraction;
    sources::Sources sources;        ///< of its files
    std::set<std::string> unwanted;  ///< the paths of files that a rule leaves out, and of generated ones
};

/// `checkout` is where the sources are; none without them. With them, the extraction can be joined
/// with that of the sources (indexing/joining.h). A document is one step of the progress. Adds to `report` what was
/// read, and what could not be.
ReadDocuments read_documents(ScipFiles& scip, const Repository& repository, const PathRules& exclusions,
                             const std::optional<Checkout>& checkout, TextSpool& spool, indexing::Progress& progress,
                             indexing::ImportReport& report);

}  // namespace host::scip
