// All that an import knows before it writes: what the SCIP file says and what the sources add.
#pragma once

#include "host/scip/contents.h"
#include "host/scip/rows.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host::scip {

struct Gathered {
    Contents contents;
    // For each file, in the order of `contents.files`.
    std::vector<FileRows> rows;
    std::vector<std::int64_t> content_hashes;  ///< of the source that was read; 0 when there was none

    std::string damaged;           ///< the files with declarations in parts that do not parse, each ended by "\n"
    std::string shared_summaries;  ///< as `host::shared_summaries` gives them
};

}  // namespace host::scip
