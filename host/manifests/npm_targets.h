// Where the entry points of an npm package lie in its sources.
#pragma once

#include "host/manifests/manifest_files.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace host::manifests {

/// Returns the source for a path that a manifest of `folder` states, relative to the folder; "" where there is none.
/// With a "*", returns the path below which there are sources.
///
///     "./src/a.ts" -> "src/a.ts"     "./dist/esm/a.js" -> "src/a.ts", if dist/ is built from src/
///     "./lib/*.js" -> "src/*.js"     "./dist/a.d.ts" -> ""
std::string source_of(const ManifestFiles& files, std::string_view folder, std::string_view stated);

/// Returns the sources of a value of `exports` or `imports`: a path, a list, or such values by condition; those of the
/// conditions that compilers ask for come first.
std::vector<std::string> sources_of(const ManifestFiles& files, std::string_view folder, const nlohmann::json& value);

}  // namespace host::manifests
