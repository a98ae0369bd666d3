// The browser of the user.
#pragma once

#include <string>

namespace host {

/// Has the desktop open a file, as `xdg-open` does. Returns whether it has taken it; false where there is no desktop.
bool open_in_browser(const std::string& path);

}  // namespace host
