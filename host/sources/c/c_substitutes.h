// Declarations that a build may do without, since the system or a library has what they stand in for.
//
//     #ifndef HAVE_STRSEP
//     char *strsep(char **text, const char *marks);
//     #endif
//
//     #ifndef EPOLLRDHUP
//     #define EPOLLRDHUP 0x2000
//     #endif
//
// What such a name means is only known where the build is.
#pragma once

#include "host/sources/c/c_conditions.h"
#include "host/syntax/syntax.h"

namespace host::sources {

/// Marks the declarations of a file that stand in for others. One of which each branch of a condition has a form stands
/// in for none.
void mark_substitutes(syntax::Syntax& syntax, const CBranches& branches);

}  // namespace host::sources
