// Options of the client library.
#pragma once

#include <libpq-fe.h>

#include <string>
#include <utility>
#include <vector>

namespace host::postgresql {

/// Keywords and values.
using ClientOptions = std::vector<std::pair<std::string, std::string>>;

/// Those of an array of the library that have a value; the array is freed. None of a null array.
ClientOptions taken_from(PQconninfoOption* array);

}  // namespace host::postgresql
