// The checksum of a table of a snapshot.
#pragma once

#include "host/postgresql/connection.h"
#include "host/postgresql/snapshot_tables.h"
#include "host/postgresql/values.h"

#include <cstdint>
#include <string_view>

namespace host::postgresql {

/// The sum of a hash (XXH3) of each row, so that the order of the rows does not matter.
class TableChecksum {
  public:
    /// `row` holds the values of the table's columns, as they are sent: each behind its length of four bytes, which is
    /// -1 for NULL.
    void add(std::string_view row);

    [[nodiscard]] std::int64_t value() const { return static_cast<std::int64_t>(sum_); }

  private:
    std::uint64_t sum_ = 0;
};

/// The checksum of the rows that a table has of a snapshot, all of which are read. `key` holds the repository and the
/// snapshot.
std::int64_t stored_checksum(Connection& connection, const SnapshotTable& table, const Parameters& key);

}  // namespace host::postgresql
