// The end of a path.
#pragma once

#include <cstddef>
#include <string_view>

namespace host {

/// Returns the last two segments of a path, which tell two files of one name apart mostly: "text/glob.h" of
/// "host/text/glob.h". A path of fewer segments is returned whole.
constexpr std::string_view short_path(std::string_view path) {
    const std::size_t last = path.rfind('/');
    if (last == std::string_view::npos || last == 0) {
        return path;
    }
    const std::size_t previous = path.rfind('/', last - 1);
    return previous == std::string_view::npos ? path : path.substr(previous + 1);
}

}  // namespace host
