#include "embedded/postgresql/advisory_lock.h"

#include <string_view>

namespace embedded::postgresql {

namespace {

// The first of the two numbers of each lock: "wiki", in letters. As they are written here they lead to rows of the
// server's list of locks with `objsubid` 2.
constexpr std::string_view TRY = "SELECT pg_catalog.pg_try_advisory_xact_lock(2003397481, $1::pg_catalog.int4)";
constexpr std::string_view HOLDER = R"sql(
    SELECT pg_catalog.convert_to(pg_catalog.concat(
        'user ', activity.usename, ', application ', activity.application_name, ', process ', held.pid), 'UTF8')
    FROM pg_catalog.pg_locks AS held JOIN pg_catalog.pg_stat_activity AS activity ON activity.pid = held.pid
    WHERE held.locktype = 'advisory' AND held.granted AND activity.datname = pg_catalog.current_database()
        AND held.classid = 2003397481::pg_catalog.oid AND held.objid = $1::pg_catalog.oid AND held.objsubid = 2
)sql";

}  // namespace

std::optional<std::string> holder_unless_locked(Connection& connection, std::int64_t lock) {
    {
        Rows row(connection, std::string(TRY), Parameters().integer(lock));
        const bool is_mine = row.step() && row.integer(0) != 0;
        row.step();
        if (is_mine) {
            return std::nullopt;
        }
    }
    std::string holder = "somebody who has gone meanwhile";
    Rows rows(connection, std::string(HOLDER), Parameters().integer(lock));
    while (rows.step()) {
        holder = rows.bytes(0);
    }
    return holder;
}

}  // namespace embedded::postgresql
