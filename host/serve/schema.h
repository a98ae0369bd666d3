// Checks parameters against the JSON schema that clients see.
#pragma once

#include "host/serve/json_rpc.h"

namespace host::serve {

/// Checks a value against a schema, and returns it with the schema's defaults filled in. Throws `RpcError` that names
/// the field, such as "paths[2]".
///
/// A schema has one `type`. It may have `enum`, `minimum`, `maximum` (an integer always has one, within 64 bits),
/// `minLength`, `maxLength` (checked in bytes, which is stricter), `minItems`, `maxItems` and `items`. An object has
/// `properties`, allows no others, and may have `required`. A property may have a `default`.
///
/// No string may contain a NUL, because SQLite would end it there.
Received checked(Received value, const Sent& schema);

}  // namespace host::serve
