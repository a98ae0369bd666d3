#include "host/postgresql/locks.h"

namespace host::postgresql {

namespace {

const std::string HOLDER = R"sql(
    SELECT pg_catalog.convert_to(pg_catalog.concat(
        'user ', activity.usename, ', application ', activity.application_name, ', process ', held.pid), 'UTF8')
    FROM pg_catalog.pg_locks AS held JOIN pg_catalog.pg_stat_activity AS activity ON activity.pid = held.pid
)sql";

// An advisory lock of two numbers, of which the first is "wiki", in letters. Such a lock is in the server's list of
// locks with `objsubid` 2.
const std::string SCHEMA_LOCK = "2003397481";
const std::string TRY_SCHEMA = "SELECT 1 WHERE pg_catalog.pg_try_advisory_xact_lock(" + SCHEMA_LOCK + ", 0)";
const std::string HOLDER_OF_SCHEMA = HOLDER + R"sql(
    WHERE held.locktype = 'advisory' AND held.granted AND activity.datname = pg_catalog.current_database()
        AND held.objid = 0::pg_catalog.oid AND held.objsubid = 2 AND held.classid = )sql" +
                                     SCHEMA_LOCK + "::pg_catalog.oid";

// A row that is locked bears the number of the transaction that has it locked.
const std::string TRY_REPOSITORY = "SELECT 1 FROM wiki_scope.repositories WHERE repository = $1 FOR UPDATE SKIP LOCKED";
const std::string HOLDER_OF_REPOSITORY = HOLDER + R"sql(
    JOIN wiki_scope.repositories AS locked ON locked.xmax = held.transactionid
    WHERE held.locktype = 'transactionid' AND held.granted AND locked.repository = $1
)sql";

std::optional<std::string> holder_unless_taken(Connection& connection, const std::string& attempt,
                                               const std::string& holder, const Parameters& parameters) {
    {
        Rows row(connection, attempt, parameters);
        if (row.step()) {
            row.step();
            return std::nullopt;
        }
    }
    std::string name;
    Rows rows(connection, holder, parameters);
    while (rows.step()) {
        name = rows.bytes(0);
    }
    return name;
}

}  // namespace

std::optional<std::string> holder_unless_schema_locked(Connection& connection) {
    return holder_unless_taken(connection, TRY_SCHEMA, HOLDER_OF_SCHEMA, {});
}

std::optional<std::string> holder_unless_locked(Connection& connection, std::int64_t repository) {
    return holder_unless_taken(connection, TRY_REPOSITORY, HOLDER_OF_REPOSITORY, Parameters().integer(repository));
}

}  // namespace host::postgresql
