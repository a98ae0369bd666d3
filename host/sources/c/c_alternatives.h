// Declarations that stand in for one another: in branches of an `#if` of which a build takes one.
#pragma once

#include "host/syntax/syntax.h"

namespace host::sources {

/// Has each declaration that is not always built be an alternative of the first one of its name, kind and place in the
/// file: no build takes both. `has_overloads`: but for functions, which may stand beside others.
void join_alternatives(syntax::Syntax& syntax, bool has_overloads);

}  // namespace host::sources
