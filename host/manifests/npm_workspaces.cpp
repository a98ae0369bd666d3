#include "host/manifests/manifest_readers.h"
#include "host/text/blanks.h"
#include "host/text/glob.h"
#include "host/text/split_lines.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace host::manifests {

namespace {

constexpr std::string_view QUOTES = "\"'";

std::string_view unquoted(std::string_view text) {
    text = trimmed(text);
    const bool is_quoted =
        text.size() >= 2 && text.front() == text.back() && QUOTES.find(text[0]) != std::string_view::npos;
    return is_quoted ? text.substr(1, text.size() - 2) : text;
}

// The list under the key `packages` of a YAML file.
std::vector<std::string> listed_in_yaml(std::string_view text) {
    std::vector<std::string> patterns;
    bool is_in_list = false;
    for (const std::string_view line : split_lines(text)) {
        const std::string_view content = trimmed(line.substr(0, line.find(" #")));
        if (is_in_list && content.starts_with("- ")) {
            patterns.emplace_back(unquoted(content.substr(2)));
        } else if (!content.empty() && !content.starts_with('#')) {
            is_in_list = line.starts_with("packages:");
        }
    }
    return patterns;
}

std::vector<std::string> strings_of(const nlohmann::json& list) {
    std::vector<std::string> strings;
    if (list.is_array()) {
        for (const nlohmann::json& each : list) {
            if (each.is_string()) {
                strings.push_back(each.get<std::string>());
            }
        }
    }
    return strings;
}

// A pattern for folders; "!a" takes back what patterns before it list.
struct WorkspacePattern {
    Glob glob;
    bool lists = true;
};

// The folders that the workspace of a folder lists, in the forms of npm, Yarn, pnpm and Lerna.
std::vector<WorkspacePattern> listed_folders(const ManifestFiles& files, const std::string& folder) {
    const auto path = [&](std::string_view name) { return joined(folder, name).value_or(""); };
    const nlohmann::json manifest = files.json(path("package.json"));
    const nlohmann::json& workspaces = value_at(manifest, "workspaces");
    std::vector<WorkspacePattern> listed;
    for (const std::vector<std::string>& patterns :
         {strings_of(workspaces.is_object() ? value_at(workspaces, "packages") : workspaces),
          strings_of(value_at(files.json(path("lerna.json")), "packages")),
          listed_in_yaml(files.text(path("pnpm-workspace.yaml")).value_or(""))}) {
        for (const std::string& pattern : patterns) {
            const bool lists = !pattern.starts_with('!');
            const std::optional<std::string> below = joined(folder, std::string_view(pattern).substr(lists ? 0 : 1));
            try {
                if (below) {
                    listed.push_back({Glob(*below), lists});
                }
            } catch (const std::invalid_argument&) {
                continue;  // longer than any path
            }
        }
    }
    return listed;
}

// The last pattern that matches decides.
bool is_listed(const std::vector<WorkspacePattern>& listed, std::string_view folder) {
    const auto last = std::find_if(listed.rbegin(), listed.rend(),
                                   [&](const WorkspacePattern& each) { return each.glob.matches(folder); });
    return last != listed.rend() && last->lists;
}

// The folders that manifests name as dependencies: `"a": "file:../a"`.
std::vector<std::string> linked_folders(const ManifestFiles& files, const std::string& folder) {
    std::vector<std::string> folders;
    const nlohmann::json manifest = files.json(joined(folder, "package.json").value_or(""));
    for (const char* const key : {"dependencies", "devDependencies"}) {
        const nlohmann::json& dependencies = value_at(manifest, key);
        for (const nlohmann::json& version : dependencies.is_object() ? dependencies : nlohmann::json::object()) {
            const std::string stated = version.is_string() ? version.get<std::string>() : "";
            for (const std::string_view protocol : {"file:", "link:", "portal:"}) {
                if (stated.starts_with(protocol)) {
                    folders.push_back(joined(folder, stated.substr(protocol.size())).value_or(""));
                }
            }
        }
    }
    return folders;
}

}  // namespace

void read_npm_workspaces(const ManifestFiles& files, std::span<resolve::Package> packages) {
    const auto is_npm = [](const resolve::Package& package) { return package.language == "javascript"; };
    for (const resolve::Package& around : packages) {
        const std::vector<WorkspacePattern> listed =
            is_npm(around) ? listed_folders(files, around.folder) : std::vector<WorkspacePattern>();
        const std::vector<std::string> linked =
            is_npm(around) ? linked_folders(files, around.folder) : std::vector<std::string>();
        for (resolve::Package& package : packages) {
            if (is_npm(package) && is_listed(listed, package.folder)) {
                package.visible_below = around.folder;
            }
            if (is_npm(package) && std::ranges::find(linked, package.folder) != linked.end()) {
                package.visible_below.clear();
            }
        }
    }
}

}  // namespace host::manifests
