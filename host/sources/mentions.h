// The names of a file that refer to its imports.
#pragma once

#include "host/sources/captures.h"

#include <string_view>

namespace host::sources {

/// Counts in each link of the captures the names that mean it, by the scopes of the text: a name means what the
/// innermost scope around it binds it to. Of names that one scope binds to several things nobody knows what they mean.
/// A link that stands in a scope is not exported.
///
///     from m import a as b     3 mentions of b, of which one goes on with "c"; the parameter of g hides it
///     def f(): return b(b, b.c)
///     def g(b): return b
void count_mentions(std::string_view text, Captures& captures);

}  // namespace host::sources
