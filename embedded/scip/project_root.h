// The folder that a SCIP file was made of.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embedded::scip {

/// The folder of this machine that a URI names ("file:///home/me/a%20b"); none for any other URI, and for what is no
/// folder here.
std::optional<std::string> folder_of_uri(std::string_view uri);

}  // namespace embedded::scip
