// The lines that a range of a SCIP document covers.
#pragma once

#include "host/indexing/line_span.h"
#include "host/scip/reader.h"

namespace host::scip {

/// A half-open end at the beginning of a later line ends on the line before. Whatever the range says, the result lies
/// between 1 and the greatest line that there can be.
indexing::LineSpan lines_of(const Range& range);

}  // namespace host::scip
