// Where the modules of JavaScript and TypeScript stand.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host::sources {

/// Where the module may stand that the file at `path` calls `module`, in the order in which it is looked for. Nowhere
/// when that is the name of a package, or leads out of the checkout.
///
///     src/a.ts, ./b       src/b.ts, src/b.tsx, ..., src/b/index.ts, ...
///     src/a.ts, ../b.js   b.js, b.ts, ..., b.js/index.ts, ...
std::vector<std::string> places_of_module(std::string_view path, std::string_view module);

}  // namespace host::sources
