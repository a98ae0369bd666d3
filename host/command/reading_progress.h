// The progress of reading the sources of a checkout.
#pragma once

#include "host/indexing/progress.h"

namespace host {

/// Returns a function that shows on a terminal how far the reading has come. It throws when the user asks for an end
/// while an `Interruption` lives.
indexing::OnProgress progress_of_reading();

}  // namespace host
