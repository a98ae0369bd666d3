// A number with its noun.
#pragma once

#include <cstdint>
#include <string>

namespace host {

/// Returns "1 file", "2 files". `thing` is the singular of a noun whose plural ends with "s".
inline std::string counted(std::int64_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

}  // namespace host
