// The tables of indexes in a server: the indexes of many repositories, each of which may be there in several snapshots.
//
// All tables are in the schema "wiki_scope" of their database. The key of every table begins with the number of the
// repository and the number of the snapshot, so that tables can be partitioned by repository, or distributed over
// several servers; `repositories` says which snapshot is current. Texts are bytes, since those of an index may hold
// any. Rows are numbered and ordered as in every index (host/index/rows.h).
#pragma once

#include "host/postgresql/connection.h"

#include <cstdint>

namespace host::postgresql {

/// The version of the schema that this program writes and reads.
std::int64_t schema_version();

/// Brings the tables of a database from whatever version, or none, to `version`, in one transaction; two that do so at
/// once do so one after the other. The version that was there before, 0 for none. Throws `PostgresqlError`, and
/// `UnusableIndex` when there is a newer version, which stays as it is.
std::int64_t migrate(Connection& connection, std::int64_t version = schema_version());

/// Throws `UnusableIndex` when the database has another version than this program reads, or none.
void require_schema(Connection& connection);

}  // namespace host::postgresql
