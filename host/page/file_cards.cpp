#include "host/page/file_cards.h"

#include "host/text/blanks.h"
#include "host/text/control_characters.h"
#include "host/text/markdown_text.h"
#include "host/text/split_lines.h"
#include "workers/wiki/scope/render.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace host {

namespace {

using std::string_view;

// The cells behind that of the row's own path.
constexpr std::size_t USED_BY = 4;
constexpr std::size_t TESTS = 5;

// What the component begins the row of a file with.
std::string beginning_of_row(string_view path) {
    return "| `" + std::string(path) + "` |";
}

// Each cell is ended by a bar that no backslash precedes.
std::vector<string_view> cells_of(string_view row) {
    std::vector<string_view> cells;
    std::size_t begin = 0;
    for (std::size_t bar = row.find('|'); bar != string_view::npos; bar = row.find('|', bar + 1)) {
        if (bar == 0 || row[bar - 1] != '\\') {
            cells.push_back(row.substr(begin, bar - begin));
            begin = bar + 1;
        }
    }
    return cells;
}

// A list of paths that stand in a cell as they are, but for a backslash before each bar.
std::string cell_of_paths(string_view cell) {
    std::string paths;
    for (const char character : trimmed(cell)) {
        if (character == '|') {
            paths.pop_back();
        }
        paths += character;
    }
    return paths.empty() ? std::string(cell) : " " + plain_cell(paths) + " ";
}

std::string safe_row(string_view row, string_view path) {
    row.remove_prefix(beginning_of_row(path).size());
    std::string safe = "| " + code_cell(path) + " |";
    const std::vector<string_view> cells = cells_of(row);
    for (std::size_t at = 0; at < cells.size(); ++at) {
        safe += at == USED_BY || at == TESTS ? cell_of_paths(cells[at]) : std::string(cells[at]);
        safe += "|";
    }
    return safe;
}

}  // namespace

std::string file_cards(const Page& page, const std::string& heading) {
    std::vector<std::string> missing;
    for (const std::string& path : page.missing) {
        missing.push_back(without_control_characters(path));
    }
    std::vector<string_view> paths;  // of the rows
    for (const storage::ScopeFile& file : page.facts.files) {
        paths.emplace_back(file.path);
    }
    paths.insert(paths.end(), missing.begin(), missing.end());

    const std::string rendered = render_file_cards(page.facts, page.fan_in, heading, missing);
    std::string cards;
    auto path = paths.begin();
    for (const string_view line : split_lines(rendered)) {
        const bool is_row = path != paths.end() && line.starts_with(beginning_of_row(*path));
        cards.append(is_row ? safe_row(line, *path++) : std::string(line)).append("\n");
    }
    return cards;
}

}  // namespace host
