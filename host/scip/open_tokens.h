// Settles tokens that SCIP may name wrongly, by the source.
//
// - scip-python names the wrong declaration for what a package passes on through `*`: the token's text is another name,
//   and no import of the file gives that to the declaration. Such a token is dropped.
// - What a source of Rust compiles for its tests alone is no production code: tokens there are dropped.
#pragma once

#include "host/files/checkout.h"
#include "host/indexing/import_report.h"
#include "host/scip/contents.h"
#include "host/sources/source_reader.h"

#include <optional>

namespace host::scip {

/// Counts the open tokens that hold among the references of their files, and notes the misnamed ones. `checkout` is
/// where the sources are; none without them.
void settle_open_tokens(Contents& contents, const sources::Sources& sources, const std::optional<Checkout>& checkout,
                        indexing::ImportReport& report);

}  // namespace host::scip
