// The packages that a checkout is made of, as their manifests describe them.
#pragma once

#include "host/files/checkout.h"
#include "host/resolve/repository.h"

#include <span>
#include <string>
#include <vector>

namespace host::manifests {

/// Returns the packages by folder, then language: one for all manifests of a language in a folder. `paths` are those of
/// all files of the checkout, relative to its root; others are neither read nor led to. What a manifest states in a
/// form that is not understood is left out, and so is a manifest that cannot be read.
std::vector<resolve::Package> packages_of(const Checkout& checkout, std::span<const std::string> paths);

}  // namespace host::manifests
