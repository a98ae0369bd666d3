// Which declarations of a page are members of its types.
#pragma once

#include "workers/wiki/scope/facts.h"

namespace wiki::scope {

/// The ids of the page's declarations that lie within the lines of another declaration of their file, a type:
/// members, not top-level code. Both bounds are inclusive, so two types of equal lines are members of each other. n
/// declarations and t types of one file cost O((n + t) log t).
OrderedSet<SymbolId> _members(const ScopeFacts& facts);

}  // namespace wiki::scope
