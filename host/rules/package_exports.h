// What packages for npm offer to those who install them.
#pragma once

#include "host/files/checkout.h"

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The paths that the `package.json` in a folder of a checkout ("" for its root) exports, relative to the root; "*" in
/// them stands for anything. None where there is no such file, or none that can be read.
std::vector<std::string> package_exports(const Checkout& checkout, std::string_view folder);

}  // namespace host
