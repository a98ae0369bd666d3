// What `wiki-scope init --grants` gives a role, and what it does not: tools/with-postgresql server_tests

#include "tests/host/postgresql/prepared_server.h"

#include <gtest/gtest.h>

#include <string>

namespace host::postgresql {
namespace {

class GrantingServer : public Server {
  protected:
    GrantingServer() {
        make_role("reader");
        make_role("writer");
        make_role("other");
        folder.write("in.scip", scip::scip_file({scip::ScipDocument("a.ts").defines(scip::F)}));
        folder.write("a.ts", "function f() {}\n");
    }
    ~GrantingServer() override {
        owner.execute("DROP DATABASE IF EXISTS tested WITH (FORCE)");
        owner.execute("DROP ROLE reader, writer, other");
    }

    void make_role(const std::string& name) {
        owner.execute("DROP ROLE IF EXISTS \"" + name + "\"; CREATE ROLE \"" + name + "\" LOGIN");
    }

    // Runs what the command prints, as the owner.
    void grant(const std::string& options) const {
        const Outcome printed = run("init --index postgresql:///tested --grants " + options);
        ASSERT_EQ(printed.exit_code, 0) << printed.err;
        Connection(database).execute(printed.out);
    }
    [[nodiscard]] static std::string as(const std::string& role, const std::string& repository = "one") {
        return " --repository " + repository + " --index postgresql://" + role + "@/tested";
    }
    void expect_success(const std::string& command) const {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.exit_code, 0) << command;
        EXPECT_EQ(outcome.err.find("denied for"), std::string::npos) << outcome.err;
    }
    static void expect_refused(const std::string& role, const std::string& sql) {
        Connection connection(Address("postgresql://" + role + "@/tested"));
        EXPECT_THROW(connection.execute(sql), PostgresqlError) << role << ": " << sql;
    }
};

TEST_F(GrantingServer, LetsAReaderReadAndAnImporterImportAndNoMore) {
    expect_failure("page . --checkout ." + as("reader"), "permission denied for schema wiki_scope");
    grant("reader");
    grant("writer --may-import");
    expect_success("import in.scip" + as("writer"));
    expect_success("import in.scip" + as("writer"));
    expect_success("stats" + as("reader"));
    expect_failure("import in.scip" + as("reader"),
                   "permission denied for table repositories; have its owner grant that");
    Connection connection(database);
    EXPECT_EQ(number(connection, "SELECT count(*) FROM wiki_scope.files"), 1);
    for (const std::string sql :
         {"LOCK TABLE wiki_scope.versions IN SHARE MODE", "LOCK TABLE wiki_scope.files IN SHARE MODE",
          "UPDATE wiki_scope.repositories SET name = 'two'", "DELETE FROM wiki_scope.repositories",
          "UPDATE wiki_scope.files SET path = ''", "DELETE FROM wiki_scope.files",
          "INSERT INTO wiki_scope.versions VALUES (9, now())", "TRUNCATE wiki_scope.edges",
          "SELECT wiki_scope.remove_other_snapshots(1)", "CREATE TABLE wiki_scope.made()"}) {
        expect_refused("writer", sql);
    }
    connection.execute("REVOKE EXECUTE ON FUNCTION wiki_scope.remove_other_snapshots FROM writer");
    const Outcome untidy = run("import in.scip" + as("writer"));
    EXPECT_EQ(untidy.exit_code, 0);
    EXPECT_EQ(
        untidy.err,
        "wiki-scope: postgresql://writer@/tested: permission denied for function remove_other_snapshots; have its "
        "owner grant that; the snapshots before are still there, the next import may remove them\n");
    grant("writer");
    expect_failure("import in.scip" + as("writer"), "permission denied for table repositories");
}

TEST_F(GrantingServer, HoldsARoleToItsRepositoryByRowLevelSecurity) {
    grant("reader");
    grant("writer --may-import --repository one");
    grant("other --may-import --repository two");
    for (int time = 0; time < 2; ++time) {
        expect_success("import in.scip" + as("writer", "one"));
        expect_success("import in.scip" + as("other", "two"));
    }
    expect_success("find f" + as("writer", "one"));
    expect_success("find f" + as("reader", "two"));
    expect_failure("import in.scip" + as("other", "one"), "row-level security");
    expect_failure("page a.ts --checkout ." + as("other", "one"),
                   "no index of a repository called one (there are two)");
    Connection connection(database);
    EXPECT_EQ(number(connection, "SELECT count(*) FROM wiki_scope.symbols"), 2);
    const std::int64_t one = number(connection, "SELECT repository FROM wiki_scope.repositories WHERE name = 'one'");
    Connection other(Address("postgresql://other@/tested"));
    EXPECT_EQ(number(other, "SELECT count(*) FROM wiki_scope.symbols"), 1);
    other.execute("UPDATE wiki_scope.repositories SET snapshot = 0 WHERE name = 'one'");
    other.execute("BEGIN; SELECT FROM wiki_scope.repositories FOR UPDATE");  // which holds off no import into the other
    expect_success("import in.scip" + as("writer", "one"));
    expect_failure("import in.scip" + as("other", "two"), "is running (user other, application wiki-scope, process ");
    expect_refused("other",
                   "INSERT INTO wiki_scope.files VALUES (" + std::to_string(one) + ", 9, 1, '', NULL, NULL, 0, 0)");
    expect_refused("other", "SELECT wiki_scope.remove_other_snapshots(" + std::to_string(one) + ")");
}

// Each of these names would end its quotation.
TEST_F(GrantingServer, QuotesWhatTheyAreCalled) {
    const std::string role = "a\"b'c\\d\n;e";
    make_role("a\"\"b'c\\d\n;e");
    folder.write("role", role);
    grant("\"$(cat role)\" --may-import --repository \"$(cat role)\"");
    Connection connection(database);
    EXPECT_EQ(number(connection, "SELECT count(*) FROM pg_policies WHERE policyname = roles[1]"), 9);
    connection.execute("DROP OWNED BY \"a\"\"b'c\\d\n;e\"; DROP ROLE \"a\"\"b'c\\d\n;e\"");
    import(3);
    grant("public");
    expect_success("stats" + as("reader"));
}

}  // namespace
}  // namespace host::postgresql
