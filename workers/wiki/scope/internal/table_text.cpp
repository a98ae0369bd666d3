#include "workers/wiki/scope/internal/table_text.h"

namespace wiki::scope {

std::string _concatenated(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

std::string _short_path(std::string_view path) {
    const std::size_t last = path.rfind('/');
    if (last == std::string_view::npos || last == 0) {
        return std::string(path);
    }
    const std::size_t previous = path.rfind('/', last - 1);
    return std::string(previous == std::string_view::npos ? path : path.substr(previous + 1));
}

std::string _cell(std::string_view text) {
    std::string cell;
    cell.reserve(text.size());
    for (const char character : text) {
        if (character == '|') {
            cell += "\\|";
        } else {
            cell += character == '\n' ? ' ' : character;
        }
    }
    return cell;
}

}  // namespace wiki::scope
