// An index in a database server, beside those of other repositories.
#pragma once

#include "host/index/index.h"
#include "host/postgresql/address.h"

#include <memory>
#include <string>

namespace host::postgresql {

/// The index of one repository in a database, reached through connections of their own.
class PostgresqlIndex : public Index {
  public:
    /// `repository` may be empty to import, when the folder of the repository tells its name.
    PostgresqlIndex(Address address, std::string repository)
        : address_(std::move(address)), repository_(std::move(repository)) {}

    [[nodiscard]] std::string name() const override { return address_.name(); }
    [[nodiscard]] std::string options() const override;
    [[nodiscard]] std::unique_ptr<IndexConnection> connect() const override;
    [[nodiscard]] std::unique_ptr<NewIndex> replace(CheckInterrupt check_interrupt = [] {}) const override;

  private:
    Address address_;
    std::string repository_;
};

}  // namespace host::postgresql
