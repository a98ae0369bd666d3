// Names that the headers of this system may have.
#pragma once

#include <string_view>

namespace host::sources {

/// Returns whether a name is one that C or POSIX leaves to the system's headers, or that a C library commonly has.
bool may_be_of_system(std::string_view name);

}  // namespace host::sources
