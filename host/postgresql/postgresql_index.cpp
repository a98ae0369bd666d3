#include "host/postgresql/postgresql_index.h"

#include "host/index/sanitized_database.h"
#include "host/index/server_index.h"
#include "host/postgresql/connection.h"
#include "host/postgresql/grants.h"
#include "host/postgresql/new_postgresql_index.h"
#include "host/postgresql/postgresql_database.h"
#include "host/postgresql/schema.h"

#include <utility>

namespace host {

namespace postgresql {

namespace {

class PostgresqlConnection : public IndexConnection {
  public:
    PostgresqlConnection(const Address& address, std::string repository)
        : connection_(address), repository_(std::move(repository)) {}

    void watch(CheckInterrupt check_interrupt) override { connection_.watch(std::move(check_interrupt)); }
    [[nodiscard]] std::unique_ptr<storage::Database> read() override {
        return std::make_unique<SanitizedDatabase>(std::make_unique<PostgresqlDatabase>(connection_, repository_));
    }
    [[nodiscard]] bool is_current() override { return !connection_.has_ended(); }

  private:
    Connection connection_;
    const std::string repository_;
};

}  // namespace

std::string PostgresqlIndex::options() const {
    return "--index " + address_.name() + (repository_.empty() ? "" : " --repository " + repository_);
}

std::unique_ptr<IndexConnection> PostgresqlIndex::connect() const {
    return std::make_unique<PostgresqlConnection>(address_, repository_);
}

std::unique_ptr<NewIndex> PostgresqlIndex::replace(CheckInterrupt check_interrupt) const {
    return std::make_unique<NewPostgresqlIndex>(address_, repository_, std::move(check_interrupt));
}

}  // namespace postgresql

std::unique_ptr<Index> server_index(const std::string& address, const std::string& repository) {
    return std::make_unique<postgresql::PostgresqlIndex>(postgresql::Address(address), repository);
}

std::string grants_for(const Rights& rights) {
    return postgresql::grants(rights);
}

Preparation prepare_server(const std::string& address) {
    postgresql::Connection connection{postgresql::Address(address)};
    return {.before = postgresql::migrate(connection), .now = postgresql::schema_version()};
}

}  // namespace host
