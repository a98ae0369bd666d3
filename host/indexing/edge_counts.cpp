#include "host/indexing/edge_counts.h"

#include "workers/wiki/scope/uses.h"

namespace host::indexing {

EdgeCounts::EdgeCounts(RowId declarations) : uses_(static_cast<std::size_t>(declarations) + 1) {
    for (const Resolution resolution : RESOLUTIONS) {
        is_evidence_.at(static_cast<std::size_t>(id_of(resolution))) =
            wiki::scope::use_rules(name_of(resolution)).is_evidence;
    }
}

std::map<std::string, EdgeCount> EdgeCounts::by_resolution() const {
    std::map<std::string, EdgeCount> counts;
    for (const Resolution resolution : RESOLUTIONS) {
        counts[std::string(name_of(resolution))] = resolutions_.at(static_cast<std::size_t>(id_of(resolution)));
    }
    return counts;
}

void EdgeCounts::count(const EdgeRow& edge, bool is_from_test, std::int64_t sign) {
    EdgeCount& count = resolutions_.at(static_cast<std::size_t>(edge.resolution));
    count.edges += sign;
    count.references += sign * edge.references;
    if (!is_from_test && is_evidence_.at(static_cast<std::size_t>(edge.resolution))) {
        uses_.at(static_cast<std::size_t>(edge.target)) += sign * edge.references;
    }
}

}  // namespace host::indexing
