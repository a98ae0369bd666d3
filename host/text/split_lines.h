// Splits text into lines.
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace host {

/// Cuts the first line off a text that is not empty, and returns it without its end.
inline std::string_view cut_line(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

/// Returns the lines of a text without their ends; the last line may lack one. They refer to `text`.
inline std::vector<std::string_view> split_lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(cut_line(text));
    }
    return lines;
}

}  // namespace host
