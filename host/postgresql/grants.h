// The rights of roles on the indexes of a database.
#pragma once

#include "host/index/server_index.h"

#include <string>

namespace host::postgresql {

/// The statements that give a role what `rights` says and take from it what else it has, in one transaction. To be run
/// by the owner of the schema.
std::string grants(const Rights& rights);

}  // namespace host::postgresql
