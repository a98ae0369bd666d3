// Where what this program keeps for a checkout lies.
#pragma once

#include <filesystem>
#include <string>

namespace host::worktree {

/// Returns the folder for the checkout at a path, which it makes: `wiki-scope/NAME-HASH` in `$XDG_CACHE_HOME`, else in
/// `$HOME/.cache`. Nobody else may enter it. Throws `std::runtime_error` with one line that says what to do when there
/// is no place for it.
std::filesystem::path cache_folder(const std::filesystem::path& checkout);

}  // namespace host::worktree
