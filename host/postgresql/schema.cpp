#include "host/postgresql/schema.h"

#include "host/postgresql/locks.h"

#include <array>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

namespace host::postgresql {

namespace {

// From each version to the next. What has been released is never changed, but followed by another.
constexpr std::array MIGRATIONS{
    // The tables.
    R"sql(
        CREATE TABLE wiki_scope.repositories(
            repository integer GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
            name text COLLATE "C" UNIQUE NOT NULL,
            snapshot integer NOT NULL DEFAULT 0,    -- the current one; 0 for none
            bytes bigint NOT NULL DEFAULT 0,        -- of its rows, as they were sent
            made timestamptz
        );
        CREATE TABLE wiki_scope.notes(
            repository integer, snapshot integer, key bytea, value bytea NOT NULL,
            PRIMARY KEY(repository, snapshot, key)
        );
        CREATE TABLE wiki_scope.files(
            repository integer, snapshot integer, id bigint,    -- ascends with the path
            path bytea NOT NULL,
            language bytea,                         -- NULL when unknown
            content_hash bigint,                    -- of the source that was read; NULL when none was
            declarations bigint NOT NULL,           -- how many
            declared_lines bigint NOT NULL,         -- how many lines these take up together
            PRIMARY KEY(repository, snapshot, id)
        );
        CREATE TABLE wiki_scope.languages(
            repository integer, snapshot integer, id bigint,
            name bytea NOT NULL,
            import_resolved boolean NOT NULL,       -- whether the indexer resolves the language's imports
            PRIMARY KEY(repository, snapshot, id)
        );
        CREATE TABLE wiki_scope.symbols(
            repository integer, snapshot integer, id bigint,    -- ascends with the file
            file_id bigint NOT NULL,
            name bytea NOT NULL,
            fqn bytea NOT NULL,
            kind bytea NOT NULL,
            is_export boolean NOT NULL,
            start_line bigint NOT NULL,             -- 1-based, inclusive
            end_line bigint NOT NULL,               -- 1-based, inclusive
            uses bigint NOT NULL,                   -- by production code, as the fan-in of a page counts them
            PRIMARY KEY(repository, snapshot, id)
        );
        CREATE TABLE wiki_scope.descriptions(       -- of those declarations of which something is known
            repository integer, snapshot integer, symbol_id bigint,
            signature bytea NOT NULL,               -- up to the body
            documentation bytea NOT NULL,           -- the doc comment as prose
            PRIMARY KEY(repository, snapshot, symbol_id)
        );
        CREATE TABLE wiki_scope.resolutions(
            repository integer, snapshot integer, id bigint,    -- ascends with the name
            name bytea NOT NULL,
            PRIMARY KEY(repository, snapshot, id)
        );
        CREATE TABLE wiki_scope.edges(
            repository integer, snapshot integer, source_file_id bigint, target_id bigint, resolution_id bigint,
            refs bigint NOT NULL,                   -- how many references the row stands for
            PRIMARY KEY(repository, snapshot, source_file_id, target_id, resolution_id) INCLUDE(refs)
        );
    )sql",
    // What pages and look-ups search by. A path or a name may be longer than an entry of an index can be.
    R"sql(
        CREATE INDEX files_by_path ON wiki_scope.files(repository, snapshot, substring(path FROM 1 FOR 500));
        CREATE INDEX symbols_by_file ON wiki_scope.symbols(repository, snapshot, file_id);
        CREATE INDEX symbols_by_name ON wiki_scope.symbols(repository, snapshot, substring(name FROM 1 FOR 200));
        CREATE INDEX edges_by_target
            ON wiki_scope.edges(repository, snapshot, target_id, source_file_id, resolution_id) INCLUDE(refs);
        -- A page reads from indexes alone what a vacuum has seen: soon after an import, however large the table is.
        ALTER TABLE wiki_scope.edges SET(
            autovacuum_vacuum_insert_threshold = 10000, autovacuum_vacuum_insert_scale_factor = 0);
    )sql",
    // What damage shows by (table_checksum.h).
    R"sql(
        ALTER TABLE wiki_scope.repositories
            ADD checksums bigint[];                 -- of the tables of the current snapshot; NULL when none were made
    )sql",
    // What is looked through for parts of names (name_block.h).
    R"sql(
        CREATE TABLE wiki_scope.names(              -- of some declarations each
            repository integer, snapshot integer, symbol_id bigint,
            lowered bytea NOT NULL,                 -- the names in small letters, one behind the other
            rows bytea NOT NULL,                    -- declaration, uses, length of the name, name; and so on
            PRIMARY KEY(repository, snapshot, symbol_id)
        );
        INSERT INTO wiki_scope.names
            SELECT repository, snapshot, min(id),
                string_agg(decode(lower(encode(name, 'escape') COLLATE "C"), 'escape'), ''),
                string_agg(int8send(id) || int8send(uses) || int4send(length(name)) || name, '')
            FROM wiki_scope.symbols GROUP BY repository, snapshot, id / 30;
        UPDATE wiki_scope.repositories SET checksums = NULL;
    )sql",
    // How an import removes rows without the right to, with which it could lock tables and so hold off their readers.
    // Who has the row of a repository locked may change it.
    R"sql(
        CREATE FUNCTION wiki_scope.remove_other_snapshots(integer) RETURNS void
        LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog, pg_temp AS $$
        DECLARE
            current_one integer;
            snapshot_table text;
        BEGIN
            SELECT snapshot INTO current_one FROM wiki_scope.repositories
            WHERE repository = $1 AND xmax = pg_current_xact_id()::xid;
            IF NOT FOUND THEN
                RAISE 'the row of repository % is not locked', $1;
            END IF;
            FOREACH snapshot_table IN ARRAY
                ARRAY['notes', 'files', 'languages', 'symbols', 'descriptions', 'resolutions', 'edges', 'names']
            LOOP
                EXECUTE format('DELETE FROM wiki_scope.%I WHERE repository = $1 AND snapshot <> $2', snapshot_table)
                USING $1, current_one;
            END LOOP;
        END $$;
        REVOKE EXECUTE ON FUNCTION wiki_scope.remove_other_snapshots FROM PUBLIC;
    )sql",
    // What can be cited for a use, and is unknown in the indexes that are there. Whoever has divided the table may have
    // other names for its key and its index.
    R"sql(
        ALTER TABLE wiki_scope.edges
            ADD first_line bigint NOT NULL DEFAULT 0;   -- of the source, 1-based, of one of them; 0 when unknown
        DO $$
        DECLARE
            old record;
        BEGIN
            FOR old IN SELECT conname AS name FROM pg_catalog.pg_constraint
                       WHERE conrelid = 'wiki_scope.edges'::regclass AND contype = 'p'
            LOOP
                EXECUTE format('ALTER TABLE wiki_scope.edges DROP CONSTRAINT %I', old.name);
            END LOOP;
            FOR old IN SELECT indexrelid::regclass AS name FROM pg_catalog.pg_index
                       WHERE indrelid = 'wiki_scope.edges'::regclass
            LOOP
                EXECUTE format('DROP INDEX %s', old.name);
            END LOOP;
        END $$;
        ALTER TABLE wiki_scope.edges
            ADD PRIMARY KEY(repository, snapshot, source_file_id, target_id, resolution_id) INCLUDE(refs, first_line);
        CREATE INDEX edges_by_target
            ON wiki_scope.edges(repository, snapshot, target_id, source_file_id, resolution_id)
            INCLUDE(refs, first_line);
        UPDATE wiki_scope.repositories SET checksums = NULL;
    )sql",
};

// Who else owns the schema or something in it.
constexpr const char* OTHER_OWNER = R"sql(
    SELECT pg_catalog.convert_to(pg_catalog.pg_get_userbyid(owner)::pg_catalog.text, 'UTF8')
    FROM (SELECT nspowner AS owner FROM pg_catalog.pg_namespace WHERE nspname = 'wiki_scope'
          UNION ALL
          SELECT relowner FROM pg_catalog.pg_class JOIN pg_catalog.pg_namespace AS schema ON schema.oid = relnamespace
          WHERE nspname = 'wiki_scope') AS owners
    WHERE owner <> (SELECT oid FROM pg_catalog.pg_roles WHERE rolname = CURRENT_USER)
    LIMIT 1
)sql";

// Somebody else than who asks or a superuser, who has code run by whoever reads or imports, with the rights of these:
// who owns something in the schema without owning the schema, or the function of a trigger; and the owner of the
// schema, where its tables are views or have rules or triggers, where their policies, constraints, defaults or indexes
// call functions that are not the system's, or where a function runs with the rights of who calls it.
constexpr const char* OWNER_OF_CODE = R"sql(
    WITH RECURSIVE schema AS (
        SELECT oid, nspowner AS owner FROM pg_catalog.pg_namespace WHERE nspname = 'wiki_scope'
    ), ours(oid) AS (
        SELECT class.oid FROM schema JOIN pg_catalog.pg_class AS class ON class.relnamespace = schema.oid
        UNION SELECT inhrelid FROM ours JOIN pg_catalog.pg_inherits ON inhparent = ours.oid
    ), parts(class, oid) AS (
        SELECT 'pg_catalog.pg_class'::pg_catalog.regclass::pg_catalog.oid, oid FROM ours
        UNION ALL SELECT 'pg_catalog.pg_attrdef'::pg_catalog.regclass, part.oid
            FROM ours JOIN pg_catalog.pg_attrdef AS part ON part.adrelid = ours.oid
        UNION ALL SELECT 'pg_catalog.pg_constraint'::pg_catalog.regclass, part.oid
            FROM ours JOIN pg_catalog.pg_constraint AS part ON part.conrelid = ours.oid
        UNION ALL SELECT 'pg_catalog.pg_policy'::pg_catalog.regclass, part.oid
            FROM ours JOIN pg_catalog.pg_policy AS part ON part.polrelid = ours.oid
    ), fired AS (
        SELECT called.proowner FROM ours JOIN pg_catalog.pg_trigger AS trigger ON trigger.tgrelid = ours.oid
        JOIN pg_catalog.pg_proc AS called ON called.oid = trigger.tgfoid WHERE NOT trigger.tgisinternal
    ), callable AS (
        SELECT proowner, prosecdef FROM schema JOIN pg_catalog.pg_proc ON pronamespace = schema.oid
    ), culprits(oid) AS (
        SELECT class.relowner FROM schema, ours JOIN pg_catalog.pg_class AS class ON class.oid = ours.oid
            WHERE class.relowner <> schema.owner
        UNION ALL SELECT proowner FROM schema, fired WHERE proowner <> schema.owner
        UNION ALL SELECT proowner FROM schema, callable WHERE proowner <> schema.owner
        UNION ALL SELECT schema.owner FROM schema WHERE
            EXISTS(SELECT FROM ours JOIN pg_catalog.pg_class AS class ON class.oid = ours.oid
                   WHERE class.relkind NOT IN ('r', 'p', 'i', 'I', 'S', 't'))
            OR EXISTS(SELECT FROM ours JOIN pg_catalog.pg_rewrite AS rule ON rule.ev_class = ours.oid)
            OR EXISTS(SELECT FROM fired)
            OR EXISTS(SELECT FROM callable WHERE NOT prosecdef)
            OR EXISTS(SELECT FROM parts JOIN pg_catalog.pg_depend AS needs
                          ON needs.classid = parts.class AND needs.objid = parts.oid
                      WHERE needs.refclassid IN ('pg_catalog.pg_proc'::pg_catalog.regclass,
                                                 'pg_catalog.pg_operator'::pg_catalog.regclass,
                                                 'pg_catalog.pg_type'::pg_catalog.regclass))
    )
    SELECT pg_catalog.convert_to(rolname::pg_catalog.text, 'UTF8') FROM culprits JOIN pg_catalog.pg_roles USING(oid)
    WHERE NOT rolsuper AND rolname <> CURRENT_USER LIMIT 1
)sql";

UnusableIndex newer(const std::string& server, std::int64_t version) {
    return {UnusableIndex::Fault::NEWER, server,
            "prepared for version " + std::to_string(version) + " of the schema, but this program knows version " +
                std::to_string(schema_version())};
}

// The integer in the one row that a query gives; 0 for NULL.
std::int64_t integer_from(Connection& connection, const std::string& query) {
    Rows row(connection, query, {});
    std::int64_t integer = 0;
    while (row.step()) {
        integer = row.integer(0);
    }
    return integer;
}

// The text in the only row that a query gives; none when it gives none.
std::optional<std::string> text_from(Connection& connection, const std::string& query) {
    Rows row(connection, query, {});
    std::optional<std::string> text;
    while (row.step()) {
        text = row.bytes(0);
    }
    return text;
}

// Throws when there is no table of versions.
std::int64_t latest_version(Connection& connection) {
    return integer_from(connection, "SELECT pg_catalog.max(version) FROM wiki_scope.versions");
}

// Another program that prepares the database is waited for, as long as a connection is.
void lock_schema(Connection& connection) {
    constexpr int TRIES = 100;
    constexpr std::chrono::milliseconds BETWEEN(100);
    std::optional<std::string> holder = holder_unless_schema_locked(connection);
    for (int tried = 1; holder && tried < TRIES; ++tried) {
        std::this_thread::sleep_for(BETWEEN);
        holder = holder_unless_schema_locked(connection);
    }
    if (holder) {
        throw std::runtime_error(connection.server() + ": the lock for preparing the database is held by " + *holder +
                                 "; have that end");
    }
}

void require_ownership(Connection& connection) {
    if (const std::optional<std::string> owner = text_from(connection, OTHER_OWNER)) {
        throw std::runtime_error(connection.server() + ": the schema wiki_scope, or something in it, belongs to " +
                                 *owner + "; if you trust " + *owner +
                                 ", have init run by that role, else name another database");
    }
}

}  // namespace

std::int64_t schema_version() {
    return static_cast<std::int64_t>(MIGRATIONS.size());
}

std::int64_t migrate(Connection& connection, std::int64_t version) {
    connection.begin("ISOLATION LEVEL READ COMMITTED");  // what is read is what others have left
    lock_schema(connection);
    require_ownership(connection);
    const bool has_versions =
        integer_from(connection, "SELECT pg_catalog.count(pg_catalog.to_regclass('wiki_scope.versions'))") != 0;
    const std::int64_t before = has_versions ? latest_version(connection) : 0;
    if (before > schema_version()) {
        throw newer(connection.server(), before);
    }
    if (before == 0) {
        connection.execute("CREATE SCHEMA IF NOT EXISTS wiki_scope;"
                           "CREATE TABLE wiki_scope.versions(version integer PRIMARY KEY, made timestamptz NOT NULL)");
    }
    for (std::int64_t next = before; next < version; ++next) {
        connection.execute(MIGRATIONS.at(static_cast<std::size_t>(next)));
        connection.execute("INSERT INTO wiki_scope.versions VALUES($1, pg_catalog.now())",
                           Parameters().integer(next + 1));
    }
    connection.execute("COMMIT");
    return before;
}

void require_schema(Connection& connection) {
    using Fault = UnusableIndex::Fault;
    if (const std::optional<std::string> owner = text_from(connection, OWNER_OF_CODE)) {
        throw UnusableIndex(Fault::UNTRUSTED, connection.server(),
                            "the schema wiki_scope would run code of " + *owner +
                                " with your rights (a view, a rule, a trigger or a function)");
    }
    std::int64_t version = 0;
    try {
        version = latest_version(connection);
    } catch (const PostgresqlError& error) {
        if (error.is_about_content()) {
            throw UnusableIndex(Fault::UNPREPARED, connection.server(), "the database is not prepared for indexes");
        }
        throw;
    }
    if (version > schema_version()) {
        throw newer(connection.server(), version);
    }
    if (version < schema_version()) {
        throw UnusableIndex(Fault::UNPREPARED, connection.server(),
                            "the database is prepared for an older version of the schema");
    }
}

}  // namespace host::postgresql
