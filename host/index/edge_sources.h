// Where edges come from.
#pragma once

#include "host/index/rows.h"

#include <algorithm>
#include <vector>

namespace host {

/// The sources of some edges; of equal ones that stand together one.
inline std::vector<RowId> sources_of(const std::vector<EdgeRow>& edges) {
    std::vector<RowId> sources(edges.size());
    std::ranges::transform(edges, sources.begin(), &EdgeRow::source);
    sources.erase(std::unique(sources.begin(), sources.end()), sources.end());
    return sources;
}

}  // namespace host
