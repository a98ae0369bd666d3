// The rows of an index in SQLite.
#pragma once

#include "host/index/database.h"
#include "host/sqlite/sqlite_connection.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host {

/// An index in the state that a connection sees first. The connection must outlive it.
class SqliteDatabase : public storage::Database {
  public:
    SqliteDatabase(const SqliteConnection& connection, IndexOrigin origin)
        : connection_(connection), one_state_(connection), origin_(std::move(origin)) {}

    [[nodiscard]] std::string name() const override { return connection_.path(); }
    [[nodiscard]] IndexOrigin origin() override { return origin_; }
    [[nodiscard]] std::string noted(std::string_view key) override;
    void check() override;

    [[nodiscard]] std::int64_t count_files(std::int64_t most) override;
    void read_files_at(std::span<const std::string> paths, const OnRow<FileRow>& on_row) override;
    void read_files_below(std::string_view folder, const OnRow<FileRow>& on_row) override;
    void read_files(std::vector<RowId> ids, const OnRow<FileRow>& on_row) override;

    void read_declarations_in(std::vector<RowId> files, const OnRow<DeclarationRow>& on_row) override;
    void read_declarations(std::vector<RowId> ids, const OnRow<DeclarationRow>& on_row) override;
    void read_declarations_named(std::string_view name, const OnRow<DeclarationRow>& on_row) override;
    void read_names(std::string_view part, const OnRow<NameRow>& on_row) override;
    void read_descriptions(std::vector<RowId> declarations, const OnRow<DescriptionRow>& on_row) override;

    void read_resolutions(const OnRow<ResolutionRow>& on_row) override;
    void read_resolved_languages(std::span<const models::Text> names, const OnRow<std::string_view>& on_row) override;

    void read_edges_into(std::vector<RowId> declarations, const OnRow<EdgeRow>& on_row) override;
    void read_edges_out_of(std::vector<RowId> files, const OnRow<EdgeRow>& on_row) override;

  private:
    const SqliteConnection& connection_;
    const Transaction one_state_;
    const IndexOrigin origin_;
};

}  // namespace host
