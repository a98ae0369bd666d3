// The declarations of a source file, by the rules of an index instead of those of SCIP.
//
// Declarations that a language takes for one are one. Lines, texts and what is public come from the source, where it is
// there and says so.
#pragma once

#include "host/indexing/extraction.h"
#include "host/scip/callable_types.h"
#include "host/scip/contents.h"
#include "host/sources/source_reader.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace host::scip {

/// Which definitions of a symbol count: the forward ones only where there are no others, and of those the first file's.
class DefinitionSites {
  public:
    explicit DefinitionSites(const Contents& contents);

    [[nodiscard]] bool counts(const Definition& definition, const FileContents& file) const;

  private:
    std::vector<bool> is_defined_;
    std::unordered_map<SymbolNumber, const FileContents*> forward_;
};

/// What a file declares, and what was found out while its source was asked.
struct ReadDeclarations {
    indexing::FileDeclarations declared;
    std::int64_t out_of_damage = 0;  ///< declarations that a source does not hold of which a part does not parse
    bool has_moved = false;  ///< whether the source is not the one that was indexed: a declaration is elsewhere in it
};

/// The declarations of a file in this language. `source` is null when the source could not be read.
ReadDeclarations read_declarations(const std::string& path, const FileContents& file, const std::string& language,
                                   const Contents& contents, const DefinitionSites& sites,
                                   const CallableTypes& callable_types, const sources::Source* source);

}  // namespace host::scip
