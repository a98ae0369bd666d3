// The rows of an index in a server.
#pragma once

#include "host/index/database.h"
#include "host/postgresql/connection.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host::postgresql {

/// The current snapshot of a repository, read in one transaction. The connection must outlive it, and is for nothing
/// else meanwhile.
class PostgresqlDatabase : public storage::Database {
  public:
    /// Throws `UnusableIndex` when there is no such repository, or the database is not prepared.
    PostgresqlDatabase(Connection& connection, std::string repository);

    [[nodiscard]] std::string name() const override { return connection_.server() + " (" + repository_ + ")"; }
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
    // A member, so that it ends too when there is nothing to read.
    struct Transaction {
        explicit Transaction(Connection& of);
        ~Transaction();
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;

        Connection& connection;
    };

    void find_snapshot();
    [[nodiscard]] PostgresqlError damaged(std::string_view table) const;
    /// Those that the import has stated, in the order of `SNAPSHOT_TABLES`; empty when it has not.
    [[nodiscard]] std::vector<std::int64_t> stated_checksums();
    [[nodiscard]] std::string known_repositories();
    /// The repository and the snapshot, which are $1 and $2 of every statement.
    [[nodiscard]] Parameters key() const { return Parameters().integer(repository_id_).integer(snapshot_); }

    /// With these the ranges that integers form, $3 and $4.
    [[nodiscard]] Parameters key_and_ranges(std::vector<std::int64_t> integers) const;

    Connection& connection_;
    const std::string repository_;
    const Transaction transaction_;
    std::int64_t repository_id_ = 0;
    std::int64_t snapshot_ = 0;
    IndexOrigin origin_;
};

}  // namespace host::postgresql
