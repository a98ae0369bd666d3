// The folders that SCIP files were made of, and how they lie in one repository.
//
// The paths of a SCIP file are relative to its project root, a folder that it states as a URI. The paths of an index
// are relative to the root of the repository. This is the checkout where all project roots lie in it, else the deepest
// folder above all of them:
//
//     project roots            checkout      root of the repository    folders of the projects
//     /r/front  /r/back                      /r                        front  back
//     /r/packages/a            /r            /r                        packages/a
//     /ci/r/front  /ci/r/back  /home/me/r    /ci/r                     front  back
//     /r                                     /r
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host::scip {

/// The path that a URI names ("file:///home/me/a%20b"), which need not be there; none for any other URI.
/// Where a "%" encodes nothing, nothing in the URI is taken for encoded.
std::optional<std::filesystem::path> path_of_uri(std::string_view uri);

/// How projects lie in a repository.
struct Repository {
    std::optional<std::filesystem::path> root;  ///< none when nobody knows; need not be there
    std::vector<std::string> folders;           ///< of each project, relative to the root; "" for the root itself
};

/// `project_roots` holds the URI of each project; one that names no path is taken for the root of the repository.
Repository repository_of(std::span<const std::string> project_roots, const std::optional<std::string>& checkout);

/// The path in the repository of a file that has this path in the project in `folder`. None when it leads out of the
/// repository, is empty or absolute, has a segment ".." other than in front, holds control characters, or has more than
/// 4096 bytes.
std::optional<std::string> path_in_repository(std::string_view folder, std::string_view path);

}  // namespace host::scip
