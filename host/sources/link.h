// How the modules of a language pass names on to one another.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace host::sources {

/// A name by which a file has something of another module, or of its own.
///
///     import { a as b } from "./m"     b is a of ./m
///     export { a as b }                b is a of the file itself, and exported
///     export * as b from "./m"         b is ./m, and exported
///     export * from "./m"              every name of ./m, and exported
///
///     from m import a as b             b is a of m, or its submodule a; exported, as all names in Python
///     import m.n as b                  b is m.n
///     from m import *                  every public name of m, and exported
struct Link {
    std::string name;      ///< in this file; empty for every name of the module
    std::string original;  ///< what the module calls it; empty for the module itself
    std::string module;    ///< as the file names it; empty for the file itself
    bool is_exported = false;
    /// The names in this file that mean it (mentions.h), by what follows each behind dots: "" for nothing, "c.d" for
    /// `b.c.d`. Empty where the query names no mentions.
    std::map<std::string, std::int64_t, std::less<>> mentions = {};
};

/// Where the module may stand that the file at `path` calls `module`, in the order in which it is looked for. Nowhere
/// when that is the name of a package, or leads out of the checkout.
///
///     src/a.ts, ./b       src/b.ts, src/b.tsx, ..., src/b/index.ts, ...
///     src/a.ts, ../b.js   b.js, b.ts, ..., b.js/index.ts, ...
std::vector<std::string> places_of_module(std::string_view path, std::string_view module);

}  // namespace host::sources
