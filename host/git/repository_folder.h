// Where Git keeps what it knows of a checkout.
#pragma once

#include <filesystem>
#include <string>

namespace host::git {

/// Returns the folder of the repository of the checkout whose root is `root`: its ".git", or the folder that a file of
/// this name states, as in a second working tree; "" where there is none. Throws `std::runtime_error` with one line
/// when `root` is no folder.
std::string repository_folder(const std::filesystem::path& root);

/// Returns the folder that holds the objects and branches of the repository in the folder `repository`: that itself, or
/// for a second working tree the one of the first.
std::string shared_folder(const std::string& repository);

/// Returns whether a folder is the root of a repository's checkout.
bool is_checkout_root(const std::filesystem::path& folder);

}  // namespace host::git
