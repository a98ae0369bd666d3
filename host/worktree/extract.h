// From what sources say and what a resolver finds to what an index is made from.
#pragma once

#include "host/files/text_spool.h"
#include "host/indexing/extraction.h"
#include "host/indexing/import_report.h"
#include "host/resolve/resolver.h"
#include "host/worktree/source_facts.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace host::worktree {

/// A file of the checkout, read, and then resolved. Its texts are in a spool.
struct ReadFile {
    std::string path;
    std::int64_t content_hash = 0;  ///< 0 when it could not be read
    SourceFacts facts;
    /// Those of `facts`, which serve no further. Their symbols are their numbers in `facts.syntax`, until `extract` gives
    /// them numbers among those of all files.
    std::vector<indexing::Declaration> declarations;
    resolve::References references;
};

/// What the resolver found of a file that another front end describes.
struct FoundNames {
    std::vector<resolve::TokenTarget> tokens;
    std::vector<resolve::FileId> imports;
};

/// Returns the declarations as a `ReadFile` has them, with their texts in the spool.
std::vector<indexing::Declaration> spooled(const std::vector<DeclarationFacts>& declarations, TextSpool& spool);

/// Resolves the names of the file with this number, and drops its declarations that are defined elsewhere. May be
/// called for several files at once.
void resolve_names(ReadFile& file, resolve::FileId id, const resolve::Resolver& resolver);

/// Returns what an index is made from. `repository` holds the files in the order of `files`, and then those that
/// another front end describes (read_sources.h), of which `described` is what the resolver found. `repository` and what
/// it points at must outlive the extraction. Takes declarations, references and expressions out of `files`. Adds to
/// `report` what was read, and what could not be.
indexing::Extraction extract(std::span<ReadFile> files, const resolve::Repository& repository,
                             std::span<const FoundNames> described, indexing::ImportReport& report);

}  // namespace host::worktree
