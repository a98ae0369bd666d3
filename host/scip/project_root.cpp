#include "host/scip/project_root.h"

#include "host/text/control_characters.h"
#include "host/text/percent_encoding.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace host::scip {

namespace fs = std::filesystem;

namespace {

// Where the path leads, as far as that can be told here.
fs::path settled(const fs::path& path) {
    std::error_code error;
    fs::path canonical = fs::weakly_canonical(path, error);
    if (error) {
        canonical = path.lexically_normal();
    }
    return canonical.has_filename() ? canonical : canonical.parent_path();  // "/r/" -> "/r"
}

bool is_in(const fs::path& path, const fs::path& folder) {
    return std::ranges::mismatch(folder, path).in1 == folder.end();
}

// The deepest folder above two others, or that is one of them.
fs::path common_folder(const fs::path& one, const fs::path& other) {
    const auto [end, _] = std::ranges::mismatch(one, other);
    fs::path common;
    std::for_each(one.begin(), end, [&](const fs::path& segment) { common /= segment; });
    return common;
}

bool is_usable(std::string_view path) {
    constexpr std::size_t LONGEST = 4096;  // bytes of what a system opens
    if (path.size() > LONGEST) {
        return false;
    }
    const std::string framed = "/" + std::string(path) + "/";
    return !path.empty() && path.front() != '/' && !has_control_character(path) &&
           framed.find("/../") == std::string::npos;
}

}  // namespace

std::optional<fs::path> path_of_uri(std::string_view uri) {
    for (const std::string_view scheme : {"file://localhost/", "file:///"}) {
        if (uri.starts_with(scheme)) {
            const std::string_view written = uri.substr(scheme.size() - 1);
            std::string path = percent_decoded(written).value_or(std::string(written));
            return path.find('\0') == std::string::npos ? std::optional<fs::path>(std::move(path)) : std::nullopt;
        }
    }
    return std::nullopt;
}

Repository repository_of(std::span<const std::string> project_roots, const std::optional<std::string>& checkout) {
    std::vector<std::optional<fs::path>> roots;
    std::optional<fs::path> common;
    for (const std::string& uri : project_roots) {
        const std::optional<fs::path> path = path_of_uri(uri);
        roots.push_back(path ? std::optional(settled(*path)) : std::nullopt);
        if (roots.back()) {
            common = common ? common_folder(*common, *roots.back()) : *roots.back();
        }
    }
    Repository repository{.root = common, .folders = {}};
    if (const std::optional<fs::path> folder = checkout ? std::optional(settled(*checkout)) : std::nullopt;
        folder && (!common || is_in(*common, *folder))) {
        repository.root = folder;
    }
    for (const std::optional<fs::path>& root : roots) {
        const std::string folder = root ? root->lexically_relative(*repository.root).generic_string() : "";
        repository.folders.push_back(folder == "." ? "" : folder);
    }
    return repository;
}

std::optional<std::string> path_in_repository(std::string_view folder, std::string_view path) {
    while (path.starts_with("../") && !folder.empty()) {
        const std::size_t above = folder.rfind('/');
        folder = folder.substr(0, above == std::string_view::npos ? 0 : above);
        path.remove_prefix(3);
    }
    if (!is_usable(path) || has_control_character(folder)) {
        return std::nullopt;
    }
    return folder.empty() ? std::string(path) : std::string(folder).append("/").append(path);
}

}  // namespace host::scip
