// The references of a repository of Git: its branches, its tags and HEAD.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace host::git {

/// Returns the hash that a reference holds or leads to: "HEAD", "refs/heads/main". `own_folder` is that of the
/// repository, `shared_folder` the one that it shares with other working trees (git/repository_folder.h). None where
/// there is no such reference. What it holds may be no hash.
std::optional<std::string> hash_of(const std::string& own_folder, const std::string& shared_folder,
                                   std::string reference);

/// Returns the hash of the commit that is checked out at `root`, which is the root of a checkout; none where there is
/// none. Throws `std::runtime_error` with one line when `root` is no folder.
std::optional<std::string> checked_out_commit(const std::filesystem::path& root);

}  // namespace host::git
