// The edges of the index, read in the order in which they lie.
#pragma once

#include "embedded/sqlite/connection.h"
#include "embedded/sqlite/index_rows.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace embedded {

/// The sources of some edges; of equal ones that stand together one.
std::vector<std::int64_t> sources_of(const std::vector<EdgeRow>& edges);

/// Integers as the ranges that they form, for a statement: [1, 2, 3, 7] gives "[[1,3],[7,7]]", which
/// `json_each(?1) AS range` takes apart into rows with `range.value ->> 0` and `range.value ->> 1`, first and last.
/// In any order, with or without repeats.
std::string bound_ranges(std::vector<std::int64_t> integers);

/// Steps through the edges that lead into some declarations, or out of some files.
class EdgeScan {
  public:
    /// The edges into these declarations, by target, then source, then resolution.
    static EdgeScan into(const Connection& connection, std::vector<std::int64_t> declarations);

    /// The edges out of these files, by source, then target, then resolution.
    static EdgeScan out_of(const Connection& connection, std::vector<std::int64_t> files);

    /// The next edge; none after the last.
    std::optional<EdgeRow> next();

    /// All edges that are left.
    std::vector<EdgeRow> rest();

  private:
    EdgeScan(const Connection& connection, const char* query, std::vector<std::int64_t> integers);

    Statement rows_;
};

}  // namespace embedded
