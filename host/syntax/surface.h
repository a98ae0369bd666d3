// The surface of a file: what other files can see of what it states.
#pragma once

#include "host/syntax/syntax.h"

namespace host::syntax {

/// Returns the declarations, imports, package and constraint of a file, with the names and expressions that these lead
/// to: all that the meaning of a name in another file can depend on. It mentions nothing, and its offsets are 0.
///
/// Declarations and imports keep their numbers. Names, expressions and lists are numbered in the order in which the
/// declarations lead to them. So a change in the body of a function leaves the surface equal.
Syntax surface_of(const Syntax& syntax);

}  // namespace host::syntax
