#include "host/page/citation.h"

#include "host/text/markdown_text.h"

#include <algorithm>

namespace host {

using wiki::scope::LineRange;

namespace {

std::string linked(const std::string& code, std::string_view path, const std::optional<LineRange>& lines,
                   const SourceLinks* links) {
    return links == nullptr || !lines
               ? code
               : "[" + code + "](" + links->url.of(links->commit, path, lines->first, lines->last) + ")";
}

}  // namespace

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

std::string cited(std::string_view path, const std::optional<LineRange>& lines, const SourceLinks* links) {
    return linked(code_span(citation(path, lines)), path, lines, links);
}

std::string cited(std::string_view path, const std::optional<std::int32_t>& line, const SourceLinks* links) {
    const std::optional<LineRange> lines = line ? std::optional(LineRange{*line, *line}) : std::nullopt;
    return linked(code_span(citation(path, line)), path, lines, links);
}

std::string cited_in_cell(std::string_view path, const std::optional<LineRange>& lines, const SourceLinks* links) {
    return linked(code_cell(citation(path, lines)), path, lines, links);
}

}  // namespace host
