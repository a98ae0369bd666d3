// What stands above a page that is a file of its own.
#pragma once

#include <string>

namespace host {

struct PageHead {
    std::string title = {};  ///< empty for a page without a head
    std::string stamp = {};  ///< a text without markup, for programs that look for it
};

}  // namespace host
