// The locks between programs that write indexes into one database.
#pragma once

#include "host/postgresql/connection.h"

#include <cstdint>
#include <optional>
#include <string>

namespace host::postgresql {

/// Locks the schema until the transaction ends, which must have begun. None when that is done; else who has it locked:
/// "user alice, application wiki-scope, process 4711", or nothing when nobody knows. Whoever may connect to the
/// database can hold this lock.
std::optional<std::string> holder_unless_schema_locked(Connection& connection);

/// The same of a repository. Only who may change its row can hold this lock, and who may not has nobody for its holder.
std::optional<std::string> holder_unless_locked(Connection& connection, std::int64_t repository);

}  // namespace host::postgresql
