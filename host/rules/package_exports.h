// The files that an npm package exports.
#pragma once

#include "host/files/checkout.h"

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Returns the paths that the `package.json` of a folder exports, relative to the root of the checkout. `folder` is
/// relative to the root, too; "" is the root. A "*" in a path matches anything. Returns none when the file does not
/// exist or cannot be read.
std::vector<std::string> package_exports(const Checkout& checkout, std::string_view folder);

}  // namespace host
