// Resolves tokens that SCIP leaves open, or names wrongly, by the source.
//
// - A name that a module passes on is local for scip-typescript: string in `z.string`, where the module z says
//   `export { stringType as string }`. The sources say what it stands for.
// - scip-python names the wrong declaration for what a package passes on through `*`: the token's text is another name.
//   The imports of the file say what it means; where they lead nowhere, the token is dropped.
// - What a source of Rust compiles for its tests alone is no production code: tokens there are dropped.
#pragma once

#include "host/files/checkout.h"
#include "host/indexing/import_report.h"
#include "host/indexing/modules.h"
#include "host/scip/contents.h"
#include "host/sources/source_reader.h"

#include <optional>

namespace host::scip {

/// Counts the open tokens among the references of their files, by what they turn out to name, and reports those that
/// are dropped. `checkout` is where the sources are; none without them.
void settle_open_tokens(Contents& contents, const sources::Sources& sources, indexing::Modules& modules,
                        const std::optional<Checkout>& checkout, indexing::ImportReport& report);

}  // namespace host::scip
