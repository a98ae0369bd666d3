// What a repository says of itself for everybody who indexes it.
#pragma once

#include "host/files/checkout.h"
#include "host/rules/path_rules.h"

#include <string>
#include <vector>

namespace host {

/// The name of the file at the root of a checkout, in the language TOML:
///
///     exclude  = ["gen/", "*.pb.ts"]         # as the options of the import of these names
///     include  = ["gen/kept.ts"]
///     test     = ["*.check.ts"]
///     not-test = ["django/test/"]
///     index    = "build/index.db"            # what commands take for --index
inline constexpr const char* CONFIGURATION_FILE = ".wiki-scope.toml";

struct Configuration {
    std::vector<PathRule> tests;       ///< whether a path is a test
    std::vector<PathRule> exclusions;  ///< whether a path is left out of an index
    std::string index;                 ///< the path of an index, relative to the root; empty for none
};

/// Reads the configuration of a checkout, which is empty when there is no such file. Throws `std::runtime_error` with
/// one line that names the file, the line in it and what is wrong: TOML, a key that nobody knows, a value that is no
/// list of patterns, or an index that is no file below the root. Whoever writes the file of a repository chooses neither
/// a server, which a password would be sent to, nor a file elsewhere, which an import would write.
Configuration read_configuration(const Checkout& checkout);

}  // namespace host
