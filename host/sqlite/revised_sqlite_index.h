// A revision of an index in an SQLite file.
#pragma once

#include "host/index/index.h"
#include "host/index/revision.h"
#include "host/sqlite/replacement.h"
#include "host/sqlite/sqlite_connection.h"

#include <optional>
#include <span>
#include <string>

namespace host {

/// A copy of an index, in which some rows are replaced and which then takes the place of the index: at once and whole,
/// or not at all, as a `NewIndex` does.
class RevisedSqliteIndex {
  public:
    /// Copies the index at a path. Throws `SqliteError` when that is damaged or has no checksums, what `Replacement`
    /// throws, and `std::runtime_error` with one line when there is no room.
    RevisedSqliteIndex(const std::string& path, CheckInterrupt check_interrupt);

    /// Where a file may lie meanwhile; `role` tells it from others.
    [[nodiscard]] std::string scratch_path(const std::string& role) const;

    /// Returns what the index holds, with the rows of the files with these ids, which ascend. Throws `SqliteError`.
    [[nodiscard]] IndexState state(std::span<const RowId> files) const;

    /// Replaces the rows, and puts the copy into its place; to be called once. Throws `SqliteError`, and
    /// `std::runtime_error` with one line.
    void commit(const Revision& revision);

  private:
    const std::string path_;
    const Replacement replacement_;
    std::optional<SqliteConnection> connection_;  // to the copy
};

}  // namespace host
