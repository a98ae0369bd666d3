// A new index in a server.
#pragma once

#include "host/index/index.h"
#include "host/postgresql/address.h"
#include "host/postgresql/connection.h"
#include "host/postgresql/row_copy.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace host::postgresql {

/// A new snapshot of a repository. It is written and made current in one transaction, so that nobody sees a part of it;
/// then the one before is removed, together with what an import that was killed meanwhile has left of others. Pages
/// that are being read go on to see theirs: the server keeps its rows for them.
///
/// The row of the repository is locked against other imports into it; that lock goes with the transaction.
class NewPostgresqlIndex : public NewIndex {
  public:
    /// `repository` is empty when its folder tells its name.
    NewPostgresqlIndex(const Address& address, std::string repository, CheckInterrupt check_interrupt);

    [[nodiscard]] std::string name() const override;
    void watch(CheckInterrupt check_interrupt) override { connection_.watch(std::move(check_interrupt)); }
    [[nodiscard]] std::string scratch_path(const std::string& role) const override;
    void claim(const std::string& folder) override;
    [[nodiscard]] bool would_replace() const override { return current_ > 0; }
    [[nodiscard]] RowWriter& rows() override;
    void complete(const RowCounts& counts) override;
    void commit() override;
    [[nodiscard]] std::string remark() const override { return remark_; }
    [[nodiscard]] std::runtime_error failure(const IndexError& error) const override;

  private:
    [[nodiscard]] std::runtime_error unchangeable() const;
    /// Reads the numbers of the repository and of its current snapshot. False when there is no such repository yet.
    bool find_repository();
    void remove_leftovers();
    void remove_superseded();
    /// The repository must be locked.
    void remove_other_snapshots();
    /// Has pages read the new rows at less cost, if the server allows that.
    void vacuum();

    Connection connection_;
    std::string repository_;
    std::int64_t repository_id_ = 0;
    std::int64_t current_ = 0;  // snapshot; 0 for none
    std::optional<RowCopy> rows_;
    std::string remark_;
};

}  // namespace host::postgresql
