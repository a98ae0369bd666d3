// What somebody may try who can create objects in the database, or connect to it: tools/with-postgresql server_tests

#include "tests/host/postgresql/prepared_server.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace host::postgresql {
namespace {

class AttackedServer : public Server {
  protected:
    AttackedServer() {
        owner.execute("DROP ROLE IF EXISTS attacker; CREATE ROLE attacker LOGIN");
        folder.write("in.scip", scip::scip_file({scip::ScipDocument("a.ts").defines(scip::F)}));
        folder.write("a.ts", "function f() {}\n");
    }
    ~AttackedServer() override {
        owner.execute("DROP DATABASE IF EXISTS tested WITH (FORCE)");
        owner.execute("DROP ROLE attacker");
    }

    // The attacker's connection to a database made anew, in which he may create what he likes.
    [[nodiscard]] Connection into_new_database() {
        owner.execute("DROP DATABASE tested WITH (FORCE)");
        owner.execute("CREATE DATABASE tested");
        owner.execute("GRANT CREATE ON DATABASE tested TO attacker");
        Connection(database).execute("GRANT CREATE ON SCHEMA public TO attacker");
        return Connection(Address("postgresql://attacker@/tested"));
    }
};

// Functions, aggregates and operators that suit the arguments of our statements better than the server's own, or as
// well.
void shadow_builtins(Connection& attacker) {
    constexpr std::array FUNCTIONS{
        "convert_to(text, text) RETURNS bytea",
        "convert_to(text, name) RETURNS bytea",
        "unnest(bytea[]) RETURNS SETOF bytea",
        "unnest(bigint[]) RETURNS SETOF bigint",
        "to_char(timestamp, text) RETURNS text",
        "to_regclass(text) RETURNS regclass",
        "encode(bytea, text) RETURNS text",
        "lower(text) RETURNS text",
        "now() RETURNS timestamptz",
        "clock_timestamp() RETURNS timestamptz",
        "pg_get_userbyid(oid) RETURNS name",
    };
    for (const std::string function : FUNCTIONS) {
        attacker.execute("CREATE FUNCTION public." + function +
                         " LANGUAGE plpgsql AS $$ BEGIN RAISE 'the function of an attacker was called'; END $$");
    }
    attacker.execute("CREATE FUNCTION public.step(bigint) RETURNS bigint LANGUAGE plpgsql AS "
                     "$$ BEGIN RAISE 'the aggregate of an attacker was called'; END $$;"
                     "CREATE AGGREGATE public.count(*) (SFUNC = public.step, STYPE = bigint, INITCOND = 0)");
    for (const std::string type : {"regclass", "integer", "bigint", "text", "bytea", "name", "oid"}) {
        attacker.execute(
            "CREATE FUNCTION public.step(bigint, " + type +
            ") RETURNS bigint LANGUAGE plpgsql AS $$ BEGIN RAISE 'the aggregate of an attacker was called'; END $$;"
            "CREATE AGGREGATE public.count(" +
            type +
            ") (SFUNC = public.step, STYPE = bigint, INITCOND = 0);"
            "CREATE AGGREGATE public.max(" +
            type +
            ") (SFUNC = public.step, STYPE = bigint, INITCOND = 0);"
            "CREATE FUNCTION public.compared(" +
            type + ", " + type +
            ") RETURNS boolean LANGUAGE plpgsql AS $$ BEGIN RAISE 'the operator of an attacker was called'; END $$");
        for (const std::string name : {"=", "<>", ">", "<"}) {
            attacker.execute("CREATE OPERATOR public." + name + " (LEFTARG = " + type + ", RIGHTARG = " + type +
                             ", FUNCTION = public.compared)");
        }
    }
}

TEST_F(AttackedServer, NeverCallsWhatOthersHavePutIntoAFormerSchemaOfThePath) {
    ASSERT_EQ(run("import in.scip --checkout . --index new.db").exit_code, 0);
    const std::string expected = shell("wiki-scope page a.ts --checkout . --index new.db").out;
    for (const std::string options : {"", "?options=-csearch_path%3Dpublic,pg_catalog"}) {
        Connection attacker = into_new_database();
        shadow_builtins(attacker);
        if (options.empty()) {
            owner.execute("ALTER DATABASE tested SET search_path = public, pg_catalog");
        }
        const std::string server = " --index 'postgresql:///tested" + options + "'";
        const std::string one = " --checkout . --repository one" + server;
        for (const std::string& command :
             {"init" + server, "import in.scip" + one, "import in.scip" + one, "stats --repository one" + server,
              "find F --repository one" + server, "files a.ts --repository one" + server}) {
            const Outcome outcome = run(command);
            EXPECT_EQ(outcome.exit_code, 0) << command << " said: " << outcome.err;
        }
        EXPECT_EQ(run("page a.ts" + one).out, expected);
        expect_failure("page a.ts --repository two" + server, "(there are one)");
    }
}

TEST_F(AttackedServer, WhoMayOnlyConnectCanHoldUpNoImportAndIsNamedWhereInitWaits) {
    Connection attacker(Address("postgresql://attacker@/tested?application_name=evil"));
    attacker.execute("SELECT pg_advisory_lock(2003397481, number) FROM generate_series(0, 9) AS of(number)");
    import(3);
    EXPECT_EQ(lines(), 3);
    expect_failure("init --index postgresql:///tested",
                   "the lock for preparing the database is held by user attacker, application evil, process ");
}

// What its owner may have a schema run, with the rights of whoever reads or imports, and how it is taken back.
TEST_F(AttackedServer, TheSchemaOfAnotherIsNotPreparedAndReadOnlyWhereItRunsNoCode) {
    struct Code {
        std::string put;
        std::string taken;
    };
    const std::array codes{
        Code{"ALTER TABLE wiki_scope.versions RENAME TO hidden;"
             "CREATE VIEW wiki_scope.versions AS SELECT *, public.run() FROM wiki_scope.hidden",
             "DROP VIEW wiki_scope.versions; ALTER TABLE wiki_scope.hidden RENAME TO versions"},
        Code{"CREATE RULE rule AS ON INSERT TO wiki_scope.notes DO ALSO SELECT public.run()",
             "DROP RULE rule ON wiki_scope.notes"},
        Code{"CREATE TRIGGER fired BEFORE UPDATE ON wiki_scope.repositories EXECUTE FUNCTION public.fire()",
             "DROP TRIGGER fired ON wiki_scope.repositories"},
        Code{"CREATE POLICY policy ON wiki_scope.files USING (public.run())", "DROP POLICY policy ON wiki_scope.files"},
        Code{"ALTER TABLE wiki_scope.files ADD CHECK (public.run())",
             "ALTER TABLE wiki_scope.files DROP CONSTRAINT files_check"},
        Code{"ALTER TABLE wiki_scope.repositories ADD more boolean DEFAULT public.run()",
             "ALTER TABLE wiki_scope.repositories DROP more"},
        Code{"CREATE INDEX more ON wiki_scope.notes(public.run())", "DROP INDEX wiki_scope.more"},
        Code{"ALTER FUNCTION wiki_scope.remove_other_snapshots SECURITY INVOKER",
             "ALTER FUNCTION wiki_scope.remove_other_snapshots SECURITY DEFINER"},
    };
    Connection attacker = into_new_database();
    migrate(attacker);
    attacker.execute("CREATE FUNCTION public.run() RETURNS boolean IMMUTABLE LANGUAGE sql AS 'SELECT true';"
                     "CREATE FUNCTION public.fire() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NULL; END'");
    expect_failure("init --index postgresql:///tested",
                   "the schema wiki_scope, or something in it, belongs to attacker; if you trust attacker");
    for (const auto& [put, taken] : codes) {
        SCOPED_TRACE(put);
        import(3);
        EXPECT_EQ(lines(), 3);
        attacker.execute(put);
        expect_failure("stats --repository one --index postgresql:///tested",
                       "the schema wiki_scope would run code of attacker with your rights");
        expect_failure("import in.scip --repository one --index postgresql:///tested", "would run code of attacker");
        attacker.execute(taken);
    }
}

TEST_F(AttackedServer, NothingIsReadWhereOthersHavePutCodeIntoTheOwnersSchema) {
    Connection(database).execute(
        "CREATE SCHEMA attackers AUTHORIZATION attacker; GRANT CREATE ON SCHEMA wiki_scope TO attacker;"
        "GRANT USAGE ON SCHEMA wiki_scope TO attacker; GRANT ALL ON ALL TABLES IN SCHEMA wiki_scope TO attacker");
    Connection attacker(Address("postgresql://attacker@/tested"));
    for (const std::string put :
         {"CREATE FUNCTION attackers.fire() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NULL; END';"
          "CREATE TRIGGER fired BEFORE DELETE ON wiki_scope.notes EXECUTE FUNCTION attackers.fire()",
          "CREATE FUNCTION wiki_scope.remove_other_snapshots(bigint) RETURNS void LANGUAGE sql AS ''",
          "CREATE VIEW wiki_scope.more AS SELECT 1"}) {
        import(3);
        attacker.execute(put);
        expect_failure("stats --repository one --index postgresql:///tested", "would run code of attacker");
        expect_failure("import in.scip --repository one --index postgresql:///tested", "would run code of attacker");
        Connection(database).execute("DROP TRIGGER IF EXISTS fired ON wiki_scope.notes;"
                                     "DROP FUNCTION IF EXISTS wiki_scope.remove_other_snapshots(bigint);"
                                     "DROP VIEW IF EXISTS wiki_scope.more");
    }
}

}  // namespace
}  // namespace host::postgresql
