// What a repository is called by its folder.
#pragma once

#include <string>

namespace host {

/// The name of a folder, as "rxjs" of "/home/me/rxjs/": of the one that the path leads to, where it is ".", ends in ".."
/// or is a symbolic link. The folder need not be there. Empty for a root.
std::string folder_name(const std::string& path);

}  // namespace host
