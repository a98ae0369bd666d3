// Numbers of things, in words.
#pragma once

#include <cstdint>
#include <string>

namespace host {

/// "1 file", "2 files": `thing` is the singular of a noun that takes an "s".
inline std::string counted(std::int64_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

}  // namespace host
