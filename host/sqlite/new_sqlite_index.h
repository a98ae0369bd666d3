// A new index in an SQLite file.
#pragma once

#include "host/index/index.h"
#include "host/sqlite/replacement.h"
#include "host/sqlite/row_writer.h"
#include "host/sqlite/sqlite_connection.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace host {

/// A new SQLite file beside the one that it replaces.
class NewSqliteIndex : public NewIndex {
  public:
    /// Throws as `require_replaceable` and `Replacement` do.
    explicit NewSqliteIndex(const std::string& path);

    [[nodiscard]] std::string name() const override { return path_; }
    void watch(CheckInterrupt check_interrupt) override { check_interrupt_ = std::move(check_interrupt); }
    [[nodiscard]] std::string scratch_path(const std::string& role) const override;
    void claim(const std::string& /*folder*/) override {}  // a file holds one repository
    [[nodiscard]] bool would_replace() const override;
    [[nodiscard]] RowWriter& rows() override;
    void complete(const RowCounts& counts) override;
    void commit() override { replacement_.commit(); }
    [[nodiscard]] std::runtime_error failure(const IndexError& error) const override;

  private:
    // The database while it is being filled.
    class Filling {
      public:
        Filling(const std::string& path, const CheckInterrupt& check_interrupt);
        RowWriter& writer() { return *writer_; }
        void finish();

      private:
        SqliteConnection connection_;
        std::optional<Transaction> transaction_;
        std::optional<SqliteRowWriter> writer_;
    };

    [[nodiscard]] bool holds(const RowCounts& counts) const;

    const std::string path_;
    const Replacement replacement_;
    CheckInterrupt check_interrupt_ = [] {};
    std::optional<Filling> filling_;
};

}  // namespace host
