// Declarations that were moved to another file, or bear another name, and are the same otherwise.
#pragma once

#include "host/changes/pairing.h"

namespace host::changes {

/// Pairs declarations without a counterpart, where the sources of both states are at hand:
///
///   - Top-level ones of one name and kind in two files, with the same text: moved.
///   - Those of one kind in one file and one type, with the same text of at least three lines but for their own names:
///     renamed.
///
/// Both only where no other declaration would do as well. The members of types that are paired so are then paired by
/// name.
void join_same_texts(const IndexState& old_state, const IndexState& new_state, Pairing& pairing);

}  // namespace host::changes
