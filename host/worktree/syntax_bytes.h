// What a text states about names, as bytes.
#pragma once

#include "host/syntax/syntax.h"
#include "host/worktree/bytes.h"

#include <functional>
#include <string_view>

namespace host::worktree {

void write_syntax(ByteWriter& out, const syntax::Syntax& syntax);

/// Reads what `write_syntax` wrote. Every index in the result is that of something in it, and a declaration stands
/// behind the one that it is a member of. Throws `Malformed` for other bytes.
syntax::Syntax read_syntax(ByteReader& in);

/// Returns whether one of the names in what `write_syntax` wrote is wanted, and reads no more of it. Throws `Malformed`.
bool has_name(ByteReader& in, const std::function<bool(std::string_view name)>& is_wanted);

}  // namespace host::worktree
