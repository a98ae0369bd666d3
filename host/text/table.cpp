#include "host/text/table.h"

#include "host/text/blanks.h"
#include "host/text/printable.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <ostream>

namespace host {

namespace {

// How many code points a cell has.
std::size_t width_of(const std::string& cell) {
    return static_cast<std::size_t>(std::ranges::count_if(cell, std::not_fn(continues_code_point)));
}

}  // namespace

void Table::add(const std::vector<std::string>& cells) {
    std::vector<std::string>& row = rows_.emplace_back();
    row.reserve(cells.size());
    for (const std::string& cell : cells) {
        row.push_back(printable(cell));
    }
}

void Table::write(std::ostream& out) const {
    if (rows_.size() < 2) {
        return;
    }
    std::vector<std::size_t> widths(columns_.size());
    for (const std::vector<std::string>& row : rows_) {
        for (std::size_t at = 0; at < row.size(); ++at) {
            widths[at] = std::max(widths[at], width_of(row[at]));
        }
    }
    for (const std::vector<std::string>& row : rows_) {
        std::string line;
        for (std::size_t at = 0; at < row.size(); ++at) {
            const std::string padding(widths[at] - width_of(row[at]), ' ');
            line += at == 0 ? "" : "  ";
            line += columns_[at] == Column::NUMBER ? padding + row[at] : row[at] + padding;
        }
        out << trimmed_end(line) << '\n';
    }
}

}  // namespace host
