// Which headers only other systems have than the one that is built for: Linux with GNU C.
#pragma once

#include <string_view>

namespace host::resolve {

/// Returns whether no build for Linux finds a header that is not of the repository: `windows.h`, `mach/mach.h`. False
/// for most, as a name that is not known to belong to a system may be of any library.
bool is_header_of_other_system(std::string_view name);

/// Returns whether one of the folders of a path is, by its name, for another system: `win32/`, `WIN32-Code/`, `msvc/`.
bool is_in_folder_of_other_system(std::string_view path);

}  // namespace host::resolve
