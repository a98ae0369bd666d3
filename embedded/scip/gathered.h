// All that an import knows before it writes: what the SCIP file says and what the sources add.
#pragma once

#include "embedded/scip/contents.h"
#include "embedded/scip/rows.h"

#include <cstdint>
#include <string>
#include <vector>

namespace embedded::scip {

struct Gathered {
    Contents contents;
    // For each file, in the order of `contents.files`.
    std::vector<FileRows> rows;
    std::vector<std::int64_t> content_hashes;  ///< of the source that was read; 0 when there was none

    std::string damaged;           ///< the files with declarations in parts that do not parse, each ended by "\n"
    std::string shared_summaries;  ///< as `embedded::shared_summaries` gives them
};

}  // namespace embedded::scip
