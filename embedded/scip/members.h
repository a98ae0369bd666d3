// What a SCIP file leaves open: names that a module has from another one.
//
// scip-typescript calls a name local that it reaches through a module which only passes it on, as string in `z.string`
// where the module z says `export { stringType as string }`. The sources say what such a name stands for.
#pragma once

#include "embedded/files/checkout.h"
#include "embedded/scip/contents.h"
#include "embedded/sources/source_reader.h"

namespace embedded::scip {

/// Counts the members of modules among the references of their files, as tokens that name the declaration or the module
/// that each stands for. Members that the sources do not explain stay as they are.
void count_members(Contents& contents, const sources::Sources& sources, const Checkout& checkout);

}  // namespace embedded::scip
