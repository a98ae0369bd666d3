#include "fuzz/page_promises.h"
#include "fuzz/promise.h"
#include "host/text/split_lines.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/render.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace fuzz {

namespace {

using namespace wiki::scope;

constexpr std::string_view HEADING = "## Heading";

bool is_one_line(std::string_view text) {
    return text.find('\n') == std::string_view::npos;
}

std::size_t bars_in(std::string_view row) {
    std::size_t bars = 0;
    for (std::size_t at = row.find('|'); at != std::string_view::npos; at = row.find('|', at + 1)) {
        bars += at == 0 || row[at - 1] != '\\' ? 1 : 0;
    }
    return bars;
}

void check_frame(std::string_view block) {
    promise(block.starts_with("## Heading\n\n"), "a block begins with its heading and an empty line");
    promise(block.ends_with('\n') && !block.ends_with("\n\n"), "a block ends in one line break");
}

void check_row(std::string_view row, std::string_view path) {
    promise(row.starts_with("| `") && row.substr(3).starts_with(path) && row.substr(3 + path.size()).starts_with("` |"),
            "a row begins with the path of its file");
    promise(path.find('|') != std::string_view::npos || bars_in(row) == 8, "a row has seven cells");
}

}  // namespace

void check_rendering(const ScopeFacts& facts, std::span<const std::string> missing) {
    const FanIn fan_in = production_fan_in(facts);
    check_frame(render_consumers(facts, fan_in, HEADING));

    const std::string cards = render_file_cards(facts, fan_in, HEADING, missing);
    check_frame(cards);
    std::vector<std::string_view> paths(facts.files.size());
    std::ranges::transform(facts.files, paths.begin(), [](const ScopeFile& file) { return file.path.view(); });
    paths.insert(paths.end(), missing.begin(), missing.end());
    if (!std::ranges::all_of(paths, is_one_line)) {
        return;  // a path stands in its row as it is
    }
    constexpr std::size_t LINES_BEFORE_ROWS = 6;
    const std::vector<std::string_view> lines = host::split_lines(cards);
    promise(lines.size() == LINES_BEFORE_ROWS + paths.size(), "every file has one row");
    for (std::size_t file = 0; file < paths.size(); ++file) {
        check_row(lines[LINES_BEFORE_ROWS + file], paths[file]);
    }
}

}  // namespace fuzz
