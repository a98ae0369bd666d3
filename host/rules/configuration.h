// The configuration that a repository holds for everybody who indexes it.
#pragma once

#include "host/files/checkout.h"
#include "host/rules/path_rules.h"

#include <string>
#include <vector>

namespace host {

/// The configuration file, at the root of a checkout. It is TOML:
///
///     exclude  = ["gen/", "*.pb.ts"]         # lists of patterns, as `wiki-scope import` takes them
///     include  = ["gen/kept.ts"]
///     test     = ["*.check.ts"]
///     not-test = ["django/test/"]
///     index    = "build/index.db"            # the default of --index
inline constexpr const char* CONFIGURATION_FILE = ".wiki-scope.toml";

struct Configuration {
    std::vector<PathRule> tests;       ///< which files are tests
    std::vector<PathRule> exclusions;  ///< which files an index leaves out
    std::string index;                 ///< the path of the index, relative to the root; empty for none
};

/// Reads the configuration of a checkout. Returns an empty one when the checkout has no such file.
///
/// `index` must name a file below the root. Otherwise whoever writes the configuration could have a password sent to a
/// server, or a file elsewhere overwritten by an import.
///
/// Throws `std::runtime_error` with one line that names the file, the line in it and the fault: invalid TOML, an
/// unknown key, a value that is not a list of patterns, or an `index` that is not a file below the root.
Configuration read_configuration(const Checkout& checkout);

}  // namespace host
