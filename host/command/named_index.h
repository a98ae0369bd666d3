// The default index of a command.
#pragma once

#include <optional>
#include <string>

namespace host {

/// The name of an index, and where the name comes from.
struct NamedIndex {
    std::string place;   ///< a value for --index
    std::string origin;  ///< the variable, or the path of the configuration file
};

/// Returns the index that the environment variable WIKI_SCOPE_INDEX names, else the one in the configuration of the
/// checkout; none when neither names one. `checkout` is empty for that around the current folder. Throws what
/// `Checkout` and `read_configuration` throw.
std::optional<NamedIndex> index_named_elsewhere(const std::string& checkout);

}  // namespace host
