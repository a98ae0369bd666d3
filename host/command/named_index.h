// The index of a command to which no option names one.
#pragma once

#include <optional>
#include <string>

namespace host {

/// The name of an index, and what gives it.
struct NamedIndex {
    std::string place;  ///< as --index takes it
    std::string origin;
};

/// The index that the environment variable WIKI_SCOPE_INDEX names, else the one that the configuration of the checkout
/// does, which is empty for the current folder. None when neither does. Throws as `Checkout` and `read_configuration` do.
std::optional<NamedIndex> index_named_elsewhere(const std::string& checkout);

}  // namespace host
