#include "host/manifests/manifest_readers.h"
#include "host/manifests/toml.h"

#include <algorithm>
#include <array>
#include <string>

namespace host::manifests {

namespace {

constexpr std::array<std::string_view, 3> CARGO_TABLES{"dependencies", "dev-dependencies", "build-dependencies"};
constexpr std::array<std::string_view, 4> CRATES{"bin", "test", "example", "bench"};

// By which sources call it.
std::string crate_name(std::string name) {
    std::ranges::replace(name, '-', '_');
    return name;
}

// Of a table that has dependencies, such as `[target.'cfg(unix)']`.
void add_dependencies(const toml::table& table, resolve::Package& package) {
    for (const std::string_view key : CARGO_TABLES) {
        const toml::table* const dependencies = table[key].as_table();
        if (dependencies == nullptr) {
            continue;
        }
        for (const auto& [name, value] : *dependencies) {
            const std::string crate = crate_name(std::string(name.str()));
            package.dependencies.insert(crate);
            const toml::table* const stated = value.as_table();
            if (stated != nullptr && (*stated)["package"].is_string()) {
                package.aliases.emplace(crate, std::vector{crate_name((*stated)["package"].value_or(std::string()))});
            }
        }
    }
}

}  // namespace

void read_cargo(const ManifestFiles& files, std::string_view path, resolve::Package& package) {
    const toml::table manifest = toml_at(files, path);
    package.name = crate_name(manifest["lib"]["name"].value_or(manifest["package"]["name"].value_or(std::string())));
    package.entry = manifest["lib"]["path"].value_or(std::string());
    if (package.entry.empty() && files.has(joined(package.folder, "src/lib.rs").value_or(""))) {
        package.entry = "src/lib.rs";
    }
    for (const std::string_view key : CRATES) {
        const toml::array* const crates = manifest[key].as_array();
        for (const toml::node& crate : crates == nullptr ? toml::array() : *crates) {
            const toml::table* const stated = crate.as_table();
            if (stated != nullptr && (*stated)["path"].is_string()) {
                package.roots.push_back((*stated)["path"].value_or(std::string()));
            }
        }
    }
    add_dependencies(manifest, package);
    if (const toml::table* const targets = manifest["target"].as_table()) {
        for (const auto& [name, value] : *targets) {
            if (const toml::table* const target = value.as_table()) {
                add_dependencies(*target, package);
            }
        }
    }
}

}  // namespace host::manifests
