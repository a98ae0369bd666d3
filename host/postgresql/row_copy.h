// Writes the rows of an index in a server.
#pragma once

#include "host/index/row_writer.h"
#include "host/postgresql/connection.h"
#include "host/postgresql/name_block.h"
#include "host/postgresql/snapshot_tables.h"
#include "host/postgresql/table_checksum.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::postgresql {

/// Copies rows into a snapshot of a repository, in binary form. Rows of a table are collected until they are worth a
/// statement of their own, since rows of several tables come in turns. Where policies guard the tables, which the
/// server does not copy into, rows go through staging tables of the transaction's own. The connection must outlive it.
class RowCopy : public RowWriter {
  public:
    RowCopy(Connection& connection, std::int64_t repository, std::int64_t snapshot);

    void note(std::string_view key, std::string_view value) override;
    void add(const FileRow& row) override;
    void add(const LanguageRow& row) override;
    void add(const DeclarationRow& row) override;
    void add(const DescriptionRow& row) override;
    void add(const ResolutionRow& row) override;
    void add(const EdgeRow& row) override;

    /// Sends what is left. To be called once, at the end.
    void finish();

    [[nodiscard]] std::int64_t files() const { return tables_[place_of("files")].copied; }
    [[nodiscard]] std::int64_t declarations() const { return tables_[place_of("symbols")].copied; }
    [[nodiscard]] std::int64_t edges() const { return tables_[place_of("edges")].copied; }
    /// In bytes, of all rows.
    [[nodiscard]] std::int64_t size() const { return size_; }
    /// Of the tables, in the order of `SNAPSHOT_TABLES`.
    [[nodiscard]] std::vector<std::int64_t> checksums() const;

  private:
    struct Collected {
        std::string rows;
        std::int64_t copied = 0;
        TableChecksum checksum;
    };

    // Appends a row of the table at a place in `SNAPSHOT_TABLES`: a value for each of its columns, in their order.
    // Values are integers, booleans and bytes, or none.
    template <std::size_t PLACE, class... Values>
    void append(const Values&... values);
    void copy(std::size_t table);
    void append_names();
    /// Makes the staging tables if policies guard any of the tables.
    void stage();

    Connection& connection_;
    const std::int32_t repository_;
    const std::int32_t snapshot_;
    std::array<Collected, SNAPSHOT_TABLES.size()> tables_;  // in the order of `SNAPSHOT_TABLES`
    NameBlock names_;                                       // that are not appended yet
    bool is_staged_ = false;
    std::int64_t languages_ = 0;
    std::int64_t size_ = 0;
};

}  // namespace host::postgresql
