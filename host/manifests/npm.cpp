#include "host/manifests/manifest_readers.h"
#include "host/manifests/npm_targets.h"

#include <nlohmann/json.hpp>

#include <array>
#include <string>
#include <vector>

namespace host::manifests {

namespace {

constexpr std::array<std::string_view, 4> NPM_LISTS{"dependencies", "devDependencies", "peerDependencies",
                                                    "optionalDependencies"};
constexpr std::array<std::string_view, 5> ENTRIES{"source", "types", "typings", "module", "main"};

// `exports` of a single entry have no keys.
void add_exports(const ManifestFiles& files, const nlohmann::json& exports, resolve::Package& package) {
    const auto add = [&](const std::string& subpath, const nlohmann::json& value) {
        const std::vector<std::string> sources = sources_of(files, package.folder, value);
        if (!sources.empty()) {
            package.exports.emplace(subpath, sources.front());
        }
    };
    bool has_subpaths = false;
    if (exports.is_object()) {
        for (const auto& [key, value] : exports.items()) {
            if (key.starts_with('.')) {
                add(key, value);
                has_subpaths = true;
            }
        }
    }
    if (!has_subpaths) {
        add(".", exports);
    }
}

}  // namespace

void read_package_json(const ManifestFiles& files, std::string_view path, resolve::Package& package) {
    const nlohmann::json manifest = files.json(path);
    package.name = text_at(manifest, "name");
    add_exports(files, value_at(manifest, "exports"), package);
    if (const auto root = package.exports.find("."); root != package.exports.end()) {
        package.entry = root->second;
    }
    for (const std::string_view key : ENTRIES) {
        if (const std::string stated = text_at(manifest, key); package.entry.empty() && !stated.empty()) {
            package.entry = source_of(files, package.folder, stated);
        }
    }
    const nlohmann::json& imports = value_at(manifest, "imports");
    if (imports.is_object()) {
        for (const auto& [name, value] : imports.items()) {
            package.aliases.emplace(name, sources_of(files, package.folder, value));
        }
    }
    for (const std::string_view key : NPM_LISTS) {
        const nlohmann::json& dependencies = value_at(manifest, key);
        if (dependencies.is_object()) {
            for (const auto& [name, version] : dependencies.items()) {
                package.dependencies.insert(name);
            }
        }
    }
}

}  // namespace host::manifests
