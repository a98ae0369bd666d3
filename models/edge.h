// The resolutions of references: how the indexer found out what a name refers to.
#pragma once

#include "models/constant_set.h"

namespace models {

/// The resolutions that the indexer vouches for: the name was resolved within its file ("local"), through an import
/// ("import"), or it matches the only production declaration of that name ("unique").
inline constexpr ConstantSet TRUSTED_RESOLUTIONS{"local", "import", "unique"};

}  // namespace models
