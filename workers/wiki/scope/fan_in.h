// Who uses a page: which references are evidence of a use, how many production references reach each declaration, and
// which files use each file of the page.
//
// Three questions, three rules, over the same references:
//
//   rule               counts a reference when its resolution is                          from
//   is_use             local or import; or unique, to a file whose language has no        (as the caller asks)
//                      resolved imports, unless the target is an attribute or a constant
//   production_fan_in  local or import; or any trusted one, unless the target is an       all but tests
//                      attribute or a constant
//   file_users         as is_use                                                          other files but tests
#pragma once

#include "workers/wiki/scope/facts.h"

#include <cstdint>
#include <string_view>

namespace wiki::scope {

/// Whether a reference is evidence that its source uses its target. `import_resolved` tells whether the indexer
/// resolves imports for the language of the target's file. Where it does not, every reference across files is a match
/// of names, and a "unique" one (to the only production declaration of the name) is the best there is; but not for
/// attributes and constants, whose short names collide with unrelated accesses.
///
///   resolution           import_resolved   target_kind             result
///   "local", "import"    any               any                     true
///   "unique"             false             attribute or constant   false
///   "unique"             false             any other               true
///   "unique"             true              any                     false
///   any other            any               any                     false
bool is_use(std::string_view resolution, std::string_view target_kind, bool import_resolved);

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
