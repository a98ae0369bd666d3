// What tokens name of which the source has the last word.
//
// - A name that a module passes on is local for scip-typescript: string in `z.string`, where the module z says
//   `export { stringType as string }`. The sources say what it stands for.
// - scip-python names the wrong declaration for what a package passes on through `*`: the token's text is another name.
//   The imports of the file say what it means; where they lead nowhere, the token is dropped.
// - scip-python has no token for a name that is bound by `import f as _`: the sources tell how often it is meant.
// - scip-python takes a class that bears a name of the language, as Warning, for the language's own.
// - Projects whose packages have no name share their symbols: of those of one text, the imports of the file tell which
//   is meant, else it is ambiguous.
// - What a source of Rust compiles for its tests alone is no production code: tokens there are dropped.
#pragma once

#include "embedded/files/checkout.h"
#include "embedded/scip/contents.h"
#include "embedded/scip/import_report.h"
#include "embedded/scip/undeclared.h"
#include "embedded/sources/source_reader.h"

#include <optional>

namespace embedded::scip {

/// Counts the open tokens among the references of their files, by what they turn out to name. `checkout` is where the
/// sources are; none without them. `undeclared` is what they have declared (undeclared.h).
void settle_open_tokens(Contents& contents, const sources::Sources& sources, const UndeclaredByFile& undeclared,
                        const std::optional<Checkout>& checkout, ImportReport& report);

}  // namespace embedded::scip
