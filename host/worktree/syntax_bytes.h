// What a text states about names, as bytes.
#pragma once

#include "host/syntax/syntax.h"
#include "host/worktree/bytes.h"

namespace host::worktree {

void write_syntax(ByteWriter& out, const syntax::Syntax& syntax);

/// Reads what `write_syntax` wrote. Every index in the result is that of something in it, and a declaration stands
/// behind the one that it is a member of. Throws `Malformed` for other bytes.
syntax::Syntax read_syntax(ByteReader& in);

}  // namespace host::worktree
