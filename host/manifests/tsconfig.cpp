#include "host/manifests/manifest_readers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace host::manifests {

namespace {

using Json = nlohmann::json;

constexpr int MOST = 64;  // configurations to read for one folder; some extend one another in a circle

// What decides where modules are found, with paths relative to the root of the checkout.
struct Options {
    std::optional<std::string> base_url;
    Json paths;
    std::string paths_folder;  // of the configuration that has `paths`
};

std::vector<std::string> strings_at(const Json& value, std::string_view key) {
    const Json& found = value_at(value, key);
    std::vector<std::string> strings;
    for (const Json& each : found.is_array() ? found : Json::array({found})) {
        if (each.is_string()) {
            strings.push_back(each.get<std::string>());
        }
    }
    return strings;
}

// The configuration of the checkout that another one names; none for one of a package.
std::optional<std::string> named_configuration(const ManifestFiles& files, std::string_view folder,
                                               const std::string& name) {
    if (!name.starts_with('.')) {
        return std::nullopt;
    }
    for (const std::string_view end : {"", ".json", "/tsconfig.json"}) {
        std::optional<std::string> path = joined(folder, name + std::string(end));
        if (path && files.has(*path)) {
            return path;
        }
    }
    return std::nullopt;
}

// `left` counts how many configurations may still be read.
void read_options(const ManifestFiles& files, std::string_view path, int& left, Options& options) {
    if (left-- <= 0) {
        return;
    }
    const std::string_view folder = folder_of(path);
    const Json configuration = files.json(path);
    for (const std::string& name : strings_at(configuration, "extends")) {
        const std::optional<std::string> extended = named_configuration(files, folder, name);
        if (extended) {
            read_options(files, *extended, left, options);
        }
    }
    const Json& compiler = value_at(configuration, "compilerOptions");
    if (value_at(compiler, "baseUrl").is_string()) {
        options.base_url = joined(folder, text_at(compiler, "baseUrl"));
    }
    if (value_at(compiler, "paths").is_object()) {
        options.paths = value_at(compiler, "paths");
        options.paths_folder = folder;
    }
}

// `path`, relative to the root of the checkout, as seen from a folder.
std::string seen_from(std::string_view folder, std::string_view path) {
    std::string up;
    while (!folder.empty() && path != folder && !path.starts_with(std::string(folder) + "/")) {
        folder = folder_of(folder);
        up += "../";
    }
    const std::string_view rest = path.substr(std::min(path.size(), folder.empty() ? 0 : folder.size() + 1));
    return rest.empty() && up.empty() ? "." : up + std::string(rest);
}

void add_configuration(const ManifestFiles& files, std::string_view path, int& left, resolve::Package& package) {
    Options options;
    read_options(files, path, left, options);
    if (options.base_url) {
        package.roots.push_back(seen_from(package.folder, *options.base_url));
    }
    const std::string base = options.base_url.value_or(options.paths_folder);
    for (const auto& [pattern, value] : options.paths.items()) {
        std::vector<std::string> targets;
        for (const std::string& target : strings_at(options.paths, pattern)) {
            if (const std::optional<std::string> whole = joined(base, target)) {
                targets.push_back(seen_from(package.folder, *whole));
            }
        }
        package.aliases.emplace(pattern, std::move(targets));
    }
}

}  // namespace

void read_tsconfig(const ManifestFiles& files, std::string_view path, resolve::Package& package) {
    int left = MOST;
    add_configuration(files, path, left, package);
    // A folder may have several configurations, which the one of the usual name only lists.
    const Json configuration = files.json(path);
    const Json& references = value_at(configuration, "references");
    for (const Json& reference : references.is_array() ? references : Json::array()) {
        const std::optional<std::string> named = named_configuration(files, package.folder, text_at(reference, "path"));
        if (named && folder_of(*named) == package.folder) {
            add_configuration(files, *named, left, package);
        }
    }
}

}  // namespace host::manifests
