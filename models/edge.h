// The resolutions of references: how the indexer found out what a name refers to.
#pragma once

#include "models/constant_set.h"

#include <string_view>

namespace models {

/// The name was resolved within its file.
inline constexpr std::string_view LOCAL = "local";
/// The name was resolved through an import.
inline constexpr std::string_view IMPORT = "import";
/// The name is that of one production declaration only.
inline constexpr std::string_view UNIQUE = "unique";
/// The name is that of several declarations; nobody knows which one is meant.
inline constexpr std::string_view AMBIGUOUS = "ambiguous";
/// The reference was recorded by an indexer that did not note how it resolved names.
inline constexpr std::string_view LEGACY = "legacy";

/// The resolutions that the indexer vouches for.
inline constexpr ConstantSet TRUSTED_RESOLUTIONS{LOCAL, IMPORT, UNIQUE};

}  // namespace models
