// A server with a prepared database: tools/with-postgresql server_tests
#pragma once

#include "fixtures/scip_builder.h"
#include "host/imports/import.h"
#include "host/location/index_at.h"
#include "host/postgresql/connection.h"
#include "host/postgresql/schema.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace host::postgresql {

/// A prepared database of its own, and a folder to run the command in.
class Server : public IndexedFolder {
  protected:
    Server() : owner(Address(database_named("postgres"))) {
        owner.execute("DROP DATABASE IF EXISTS tested WITH (FORCE)");
        owner.execute("CREATE DATABASE tested");
        Connection connection(database);
        migrate(connection);
    }

    static std::string database_named(const std::string& name, const std::string& options = "") {
        return "postgresql:///" + name + options;
    }

    [[nodiscard]] std::unique_ptr<Index> repository(const std::string& name = "one") const {
        return index_at(database.name(), name);
    }

    /// Imports a file that declares f so many lines long.
    void import(int lines, const std::string& name = "one") const {
        const auto document = scip::ScipDocument("a.ts").defines(scip::F, {0, 0, 1}, {0, 0, lines - 1, 1});
        imports::import_scip({{folder.write("in.scip", scip::scip_file({document}))}, std::nullopt},
                             *repository(name)->replace(), {});
    }

    /// How long f is, as a state of the index has it.
    static std::int64_t lines(storage::Database& db) {
        std::int64_t lines = 0;
        db.read_declarations({1}, [&](const DeclarationRow& row) { lines = row.last_line; });
        return lines;
    }
    [[nodiscard]] std::int64_t lines(const std::string& name = "one") const {
        const std::unique_ptr<IndexConnection> connection = repository(name)->connect();
        return lines(*connection->read());
    }

    static std::int64_t number(Connection& connection, const std::string& query) {
        Rows rows(connection, query, {});
        std::int64_t result = 0;
        while (rows.step()) {
            result = rows.integer(0);
        }
        return result;
    }

    /// Ends the connections of others to the database, and waits for it.
    void kill_others() {
        owner.execute("SELECT pg_terminate_backend(pid, 5000) FROM pg_stat_activity WHERE datname = 'tested'");
    }

    void expect_failure(const std::string& command, const std::string& says) const {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.exit_code, 1) << command;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_NE(outcome.err.find(says), std::string::npos) << command << " said: " << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
        EXPECT_EQ(outcome.err.find("secret"), std::string::npos) << outcome.err;
    }

    Connection owner;
    const Address database{database_named("tested")};
};

}  // namespace host::postgresql
