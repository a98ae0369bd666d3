// Splits text into lines.
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace host {

/// Returns the lines of a text without their ends; the last line may lack one. They refer to `text`.
inline std::vector<std::string_view> split_lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

}  // namespace host
