// What parameters must be, as a JSON schema that clients see and that is checked.
#pragma once

#include "host/serve/json_rpc.h"

namespace host::serve {

/// The value with the defaults of the schema filled in, where it is what the schema asks for. The schema has one `type`,
/// and may have `enum`, `minimum`, `maximum` (of an integer always, within 64 bits), `minLength`, `maxLength` (checked
/// in bytes, which is stricter), `minItems`, `maxItems` and `items`; an object has `properties`, allows no others, and may
/// have `required`; each of them may have a `default`. No text holds a NUL, where SQLite would take it to end. Throws `RpcError` that names the field, as "paths[2]".
Received checked(Received value, const Sent& schema);

}  // namespace host::serve
