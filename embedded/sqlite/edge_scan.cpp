#include "embedded/sqlite/edge_scan.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace embedded {

namespace {

// The statements join in the written order (CROSS JOIN), whether or not the index was analysed.

constexpr const char* INTO = R"sql(
    SELECT edge.source_file_id, edge.target_id, edge.resolution_id, edge.refs
    FROM json_each(?1) AS range CROSS JOIN edges AS edge INDEXED BY edges_by_target
        ON edge.target_id BETWEEN range.value ->> 0 AND range.value ->> 1
)sql";

constexpr const char* OUT_OF = R"sql(
    SELECT edge.source_file_id, edge.target_id, edge.resolution_id, edge.refs
    FROM json_each(?1) AS range CROSS JOIN edges AS edge
        ON edge.source_file_id BETWEEN range.value ->> 0 AND range.value ->> 1
)sql";

}  // namespace

std::vector<std::int64_t> sources_of(const std::vector<EdgeRow>& edges) {
    std::vector<std::int64_t> sources(edges.size());
    std::ranges::transform(edges, sources.begin(), &EdgeRow::source);
    sources.erase(std::unique(sources.begin(), sources.end()), sources.end());
    return sources;
}

std::string bound_ranges(std::vector<std::int64_t> integers) {
    std::ranges::sort(integers);
    std::string ranges = "[";
    for (auto first = integers.begin(); first != integers.end();) {
        const auto gap = std::adjacent_find(first, integers.end(), [](std::int64_t left, std::int64_t right) {
            return left != right && left + 1 != right;
        });
        const auto last = gap == integers.end() ? std::prev(gap) : gap;
        ranges.append(ranges.size() > 1 ? ",[" : "[").append(std::to_string(*first)).append(",");
        ranges.append(std::to_string(*last)).append("]");
        first = std::next(last);
    }
    return ranges += "]";
}

EdgeScan EdgeScan::into(const Connection& connection, std::vector<std::int64_t> declarations) {
    return {connection, INTO, std::move(declarations)};
}

EdgeScan EdgeScan::out_of(const Connection& connection, std::vector<std::int64_t> files) {
    return {connection, OUT_OF, std::move(files)};
}

EdgeScan::EdgeScan(const Connection& connection, const char* query, std::vector<std::int64_t> integers)
    : rows_(connection, query) {
    rows_.bind(1, bound_ranges(std::move(integers)));
}

std::optional<EdgeRow> EdgeScan::next() {
    if (!rows_.step()) {
        return std::nullopt;
    }
    return EdgeRow{rows_.integer(0), rows_.integer(1), rows_.integer(2), rows_.integer(3)};
}

std::vector<EdgeRow> EdgeScan::rest() {
    std::vector<EdgeRow> rows;
    while (const std::optional<EdgeRow> row = next()) {
        rows.push_back(*row);
    }
    return rows;
}

}  // namespace embedded
