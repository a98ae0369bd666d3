// Manifests in TOML.
#pragma once

#include "host/manifests/manifest_files.h"
#include "host/text/toml.h"

#include <string_view>

namespace host::manifests {

/// Returns the table in a file; empty when it cannot be read.
inline toml::table toml_at(const ManifestFiles& files, std::string_view path) {
    try {
        return toml::parse(files.text(path).value_or(""));
    } catch (const toml::parse_error&) {
        return {};
    }
}

}  // namespace host::manifests
