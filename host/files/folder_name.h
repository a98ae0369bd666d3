// The name of a folder, by which its repository is known.
#pragma once

#include <string>

namespace host {

/// Returns the name of a folder: "rxjs" for "/home/me/rxjs/". Resolves ".", ".." and symbolic links first. The folder
/// need not exist. Returns the empty string for the root of the file system.
std::string folder_name(const std::string& path);

}  // namespace host
