// Changes as JSON, whose schema is schemas/diff.schema.json.
#pragma once

#include "host/changes/changes.h"

#include <ostream>

namespace host::changes {

void write_json(std::ostream& out, const Changes& changes);

}  // namespace host::changes
