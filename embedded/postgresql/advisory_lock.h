// The locks by which those who write indexes into a database keep out of each other's way.
#pragma once

#include "embedded/postgresql/connection.h"

#include <cstdint>
#include <optional>
#include <string>

namespace embedded::postgresql {

/// What is locked while the schema is prepared; an import locks the number of its repository, which is never 0.
constexpr std::int64_t SCHEMA_LOCK = 0;

/// Takes a lock until the transaction ends, which must have begun. None when it is taken; else who holds it: "user alice,
/// application wiki-scope, process 4711". Whoever may connect to the database can hold one.
std::optional<std::string> holder_unless_locked(Connection& connection, std::int64_t lock);

}  // namespace embedded::postgresql
