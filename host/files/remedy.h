// What to do when nothing can be written at a place.
#pragma once

#include <string>
#include <system_error>

namespace host {

/// What helps against a failure of the system to write, as the end of a sentence: "make room on its disk or choose
/// another place".
std::string remedy_for(const std::error_code& failure);

}  // namespace host
