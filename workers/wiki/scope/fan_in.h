// Who uses a page: how many production references reach each declaration, and which files use each file of the page.
// uses.h says which references count.
#pragma once

#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/uses.h"

namespace wiki::scope {

/// Counts the production references that reach each declaration, from outside the page and from its own files, and
/// finds the entry points. Tests neither count nor keep a declaration from being an entry point.
///
/// `outside` and `inside` hold the sums of `refs`, which stop at the ends of 64 bits, in the order in which each
/// declaration was first counted. `entry` holds, in the order of `facts.symbols`, the exported callables and types that
/// are neither private nor inside a type nor in a test file, and that no production reference reaches: not even one
/// that does not count, except a "legacy" one. One pass over `facts.inbound`. Calls `is_test_path`, whose failures pass
/// unchanged to the caller.
FanIn production_fan_in(const ScopeFacts& facts);

/// For each file of the page the other production files that use it (`is_use`), with their references. Other files of
/// the page are users like any; tests and the file itself are not.
using FileUsers = OrderedMap<Text, Counter<Text>>;

/// Target path -> source path -> references, which stop at the ends of 64 bits. Files that nothing uses are absent.
/// Targets in the order in which each was first used, the sources of each in the order in which they first used it.
FileUsers file_users(const ScopeFacts& facts);

}  // namespace wiki::scope
