// The references of a repository of Git: its branches, its tags and HEAD.
#pragma once

#include <optional>
#include <string>

namespace host::revisions {

/// Returns the hash that a reference holds or leads to: "HEAD", "refs/heads/main". `own_folder` is that of the
/// repository, `shared_folder` the one that it shares with other working trees (git/repository_folder.h). None where
/// there is no such reference. What it holds may be no hash.
std::optional<std::string> hash_of(const std::string& own_folder, const std::string& shared_folder,
                                   std::string reference);

}  // namespace host::revisions
