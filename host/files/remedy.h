// Advice for a failure to write.
#pragma once

#include <string>
#include <system_error>

namespace host {

/// Returns advice for a system error on writing, as the end of a sentence: "make room on its disk or choose another
/// place".
std::string remedy_for(const std::error_code& failure);

}  // namespace host
