#include "host/page/citation.h"

#include <algorithm>

namespace host {

using wiki::scope::LineRange;

std::optional<LineRange> cited_lines(const storage::ScopeSymbol& symbol) {
    if (symbol.start_line < 1) {
        return std::nullopt;
    }
    return LineRange{symbol.start_line, std::max(symbol.start_line, symbol.end_line)};
}

std::string citation(std::string_view path, const std::optional<LineRange>& lines) {
    return lines ? std::string(path) + ":L" + std::to_string(lines->first) + "-L" + std::to_string(lines->last)
                 : std::string(path);
}

std::string citation(std::string_view path, const std::optional<std::int32_t>& line) {
    return line ? std::string(path) + ":L" + std::to_string(*line) : std::string(path);
}

}  // namespace host
